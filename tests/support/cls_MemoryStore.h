#pragma once

#include "cls_MetadataRegistrar.h"
#include "omi_Singleton.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <variant>

/// One class level of a stored object, or one collection. What a persistent object wrote, in the
/// order in which it wrote it.
struct cls_MemoryNode {
    using Child = std::shared_ptr<cls_MemoryNode>;  // an object, null for a stored null
    struct List {
        Child elements;
    };
    using Value =
        std::variant<char, bool, int, unsigned int, float, double, cow_String, atr_String,
                     std::vector<int>, std::vector<float>, std::vector<double>, List, Child>;

    unsigned typeId = 0;
    cls_Uid uid;
    Child base;
    std::vector<std::pair<std::string, Value>> fields;
};

/// Writes into a tree of nodes.
class cls_MemoryWriter : public cls_WriteVisitor {
public:
    /// With \p refuse, StartWrite answers that there is nothing to write.
    explicit cls_MemoryWriter(cls_MemoryNode::Child node, bool refuse = false)
        : _node(std::move(node)), _refuse(refuse) {}

    bool StartWrite(unsigned typeId, const cls_Uid& uid) const override {
        _node->typeId = typeId;
        _node->uid = uid;
        return !_refuse;
    }
    std::unique_ptr<cls_WriteVisitor> Base(unsigned typeId) const override {
        _node->base = std::make_shared<cls_MemoryNode>();
        _node->base->typeId = typeId;
        return std::make_unique<cls_MemoryWriter>(_node->base);
    }

    void Write(const char* name, char value) const override { Add(name, value); }
    void Write(const char* name, bool value) const override { Add(name, value); }
    void Write(const char* name, int value) const override { Add(name, value); }
    void Write(const char* name, unsigned int value) const override { Add(name, value); }
    void Write(const char* name, float value) const override { Add(name, value); }
    void Write(const char* name, double value) const override { Add(name, value); }
    void Write(const char* name, const cow_String& value) const override { Add(name, value); }
    void Write(const char* name, const atr_String& value) const override { Add(name, value); }
    void Write(const char* name, std::span<const int> values) const override {
        Add(name, std::vector(values.begin(), values.end()));
    }
    void Write(const char* name, std::span<const float> values) const override {
        Add(name, std::vector(values.begin(), values.end()));
    }
    void Write(const char* name, std::span<const double> values) const override {
        Add(name, std::vector(values.begin(), values.end()));
    }

    std::unique_ptr<cls_WriteVisitor> List(const char* name, int /*count*/) const override {
        cls_MemoryNode::List list{std::make_shared<cls_MemoryNode>()};
        Add(name, list);
        return std::make_unique<cls_MemoryWriter>(list.elements);
    }
    void WriteObject(const char* name, const cls_ObjectRef& object) const override {
        cls_MemoryNode::Child child;
        if (object.object != nullptr) {
            child = std::make_shared<cls_MemoryNode>();
            object.dbWrite(object.object, cls_MemoryWriter(child));
        }
        Add(name, child);
    }

private:
    void Add(const char* name, cls_MemoryNode::Value value) const {
        _node->fields.emplace_back(name, std::move(value));
    }

    cls_MemoryNode::Child _node;
    bool _refuse;
};

/// Reads from such a tree; an absent or otherwise typed field raises std::runtime_error.
class cls_MemoryReader : public cls_ReadVisitor {
public:
    explicit cls_MemoryReader(cls_MemoryNode::Child node, bool inOrder = false)
        : _node(std::move(node)), _inOrder(inOrder) {}

    std::unique_ptr<cls_ReadVisitor> Base(unsigned typeId) const override {
        if (_node->base == nullptr || _node->base->typeId != typeId) {
            throw std::runtime_error("no base level " + std::to_string(typeId));
        }
        return std::make_unique<cls_MemoryReader>(_node->base);
    }
    cls_Uid GetUid() const override { return _node->uid; }
    bool Has(const char* name) const override {
        return _inOrder ? _next < _node->fields.size() : Find(name) != nullptr;
    }

    void Read(const char* name, char& value) const override { Get(name, value); }
    void Read(const char* name, bool& value) const override { Get(name, value); }
    void Read(const char* name, int& value) const override { Get(name, value); }
    void Read(const char* name, unsigned int& value) const override { Get(name, value); }
    void Read(const char* name, float& value) const override { Get(name, value); }
    void Read(const char* name, double& value) const override { Get(name, value); }
    void Read(const char* name, cow_String& value) const override { Get(name, value); }
    void Read(const char* name, atr_String& value) const override { Get(name, value); }
    void Read(const char* name, std::vector<int>& values) const override { Get(name, values); }
    void Read(const char* name, std::vector<float>& values) const override { Get(name, values); }
    void Read(const char* name, std::vector<double>& values) const override { Get(name, values); }

    std::unique_ptr<cls_ReadVisitor> List(const char* name) const override {
        cls_MemoryNode::List list;
        Get(name, list);
        return std::make_unique<cls_MemoryReader>(list.elements, true);
    }
    int Count() const override { return static_cast<int>(_node->fields.size()); }
    void* ReadObject(const char* name, unsigned baseTypeId) const override {
        cls_MemoryNode::Child child;
        Get(name, child);
        if (child == nullptr) {
            return nullptr;
        }
        const auto* metadata =
            omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(child->typeId);
        if (metadata == nullptr || !cls_ClassRegistrar::Inherits(child->typeId, baseTypeId)) {
            throw std::runtime_error("field " + std::string(name) + " holds an object of class " +
                                     std::to_string(child->typeId));
        }
        return metadata->Ctor(cls_MemoryReader(child));
    }

private:
    const cls_MemoryNode::Value* Find(const std::string& name) const {
        for (const auto& [stored, value] : _node->fields) {
            if (stored == name) {
                return &value;
            }
        }
        return nullptr;
    }

    template <class T>
    void Get(const char* name, T& value) const {
        const cls_MemoryNode::Value* found = nullptr;
        if (_inOrder) {
            found = _next < _node->fields.size() ? &_node->fields[_next++].second : nullptr;
        } else {
            found = Find(name);
        }
        if (found == nullptr || !std::holds_alternative<T>(*found)) {
            throw std::runtime_error("no such field, or of another type: " + std::string(name));
        }
        value = std::get<T>(*found);
    }

    cls_MemoryNode::Child _node;
    bool _inOrder;
    mutable std::size_t _next = 0;
};

/// Keeps one persistent object in memory, for tests of writing and reading.
///
///     cls_MemoryStore store;
///     store.Write(object);
///     const T same(store.Reader());
class cls_MemoryStore {
public:
    template <class T>
    void Write(const T& object, bool refuse = false) {
        _root = std::make_shared<cls_MemoryNode>();
        object.DBWrite(cls_MemoryWriter(_root, refuse));
    }

    [[nodiscard]] cls_MemoryReader Reader() const { return cls_MemoryReader(_root); }
    /// A new object of the stored class by its registered metadata, owned by the caller, who knows
    /// its class.
    [[nodiscard]] void* Construct() const {
        const auto* metadata =
            omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().Find(_root->typeId);
        if (metadata == nullptr) {
            throw std::runtime_error("unknown class " + std::to_string(_root->typeId));
        }
        return metadata->Ctor(Reader());
    }
    /// What was written, without identities: "13.7{31.3{} m_Value='x'}".
    [[nodiscard]] std::string Text() const { return _root == nullptr ? "" : TextOf(*_root); }

    cls_MemoryNode& Root() { return *_root; }

private:
    static std::string TextOf(const cls_MemoryNode& node, char open = '{', char close = '}') {
        std::string text;
        if (node.typeId != 0) {
            text += std::to_string(node.typeId >> 16) + "." + std::to_string(node.typeId & 0xFFFF);
        }
        text += open;
        if (node.base != nullptr) {
            text += TextOf(*node.base);
        }
        for (const auto& [name, value] : node.fields) {
            if (text.back() != open) {
                text += ' ';
            }
            text += (name.empty() ? "" : name + "=") +
                    std::visit([](const auto& held) { return TextOf(held); }, value);
        }
        return text + close;
    }
    static std::string TextOf(char value) { return std::string("`") + value + "`"; }
    static std::string TextOf(bool value) { return value ? "true" : "false"; }
    static std::string TextOf(int value) { return std::to_string(value); }
    static std::string TextOf(unsigned int value) { return std::to_string(value) + "u"; }
    static std::string TextOf(double value) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "%.17g", value);
        return buffer;
    }
    static std::string TextOf(const cow_String& value) { return "'" + value.Std() + "'"; }
    static std::string TextOf(const atr_String& value) {
        return "t'" + std::string(value.View()) + "'";
    }
    template <class T>
    static std::string TextOf(const std::vector<T>& values) {
        std::string text = "<";
        for (const T& value : values) {
            text += (text.size() == 1 ? "" : ",") + TextOf(value);
        }
        return text + ">";
    }
    static std::string TextOf(const cls_MemoryNode::List& list) {
        return TextOf(*list.elements, '[', ']');
    }
    static std::string TextOf(const cls_MemoryNode::Child& child) {
        return child == nullptr ? "null" : TextOf(*child);
    }

    cls_MemoryNode::Child _root;
};
