#include "host_LoadState.h"

#include <algorithm>
#include <memory>

namespace {

template <class T>
void ReadAttribute(const cls_ReadVisitor& list, mdl_PropAttr<T>& attribute) {
    const std::unique_ptr<mdl_PropAttr<T>> read(
        static_cast<mdl_PropAttr<T>*>(list.ReadObject("", mdl_PropAttr<T>::TypeId())));
    if (read == nullptr) {
        omu_ValueErrorException("an attribute of a stored load is missing")
            .Throw("host/model/host_LoadState", __LINE__);
    }
    attribute = *read;
}

}  // namespace

void host_LoadState::Propagate() {
    for (auto& component : components) {
        component.Propagate();
    }
    amplitude.Propagate();
}

void host_LoadState::Modify(const host_LoadState& change) {
    for (std::size_t i = 0; i < components.size(); ++i) {
        components[i].Modify(change.components[i]);
    }
    amplitude.Modify(change.amplitude);
}

bool host_LoadState::IsModified() const {
    return amplitude.IsModified() ||
           std::any_of(components.begin(), components.end(),
                       [](const auto& component) { return component.IsModified(); });
}

bool host_LoadState::IsActive() const {
    return std::any_of(components.begin(), components.end(),
                       [](const auto& component) { return component.IsActive(); });
}

void host_LoadState::Field::Write(const cls_WriteVisitor& visitor, const char* name,
                                  const host_LoadState& state) {
    const auto list = visitor.List(name, static_cast<int>(state.components.size()) + 1);
    for (const auto& component : state.components) {
        list->WriteObject("", cls_ObjectRef::Of(&component));
    }
    list->WriteObject("", cls_ObjectRef::Of(&state.amplitude));
}

void host_LoadState::Field::Read(const cls_ReadVisitor& visitor, const char* name,
                                 host_LoadState& state) {
    const auto list = visitor.List(name);
    host_LoadState read;
    for (int left = list->Count() - 1; left > 0; --left) {
        ReadAttribute(*list, read.components.emplace_back());
    }
    ReadAttribute(*list, read.amplitude);
    state = std::move(read);
}
