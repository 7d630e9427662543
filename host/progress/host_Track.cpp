#include "host_Track.h"

#include "host_Object.h"
#include "host_Progress.h"
#include "host_ProgressReporter.h"
#include "host_Support.h"

#include <memory>
#include <string>

const char* const host_kTrackHelp =
    "track(iterable, name='Working', total=None)\n--\n\n"
    "Iterates over iterable and shows the progress of the loop, as long commands do.\n"
    "total is the number of items, where the iterable cannot tell.";

namespace {

struct Loop {
    host_PyRef iterator;
    std::string name;
    std::unique_ptr<host_Progress> progress;  // null once the loop is over
    bool hasItem = false;                     // that the script is busy with

    void GiveUp() {
        if (progress != nullptr) {
            progress->GiveUp();
            progress.reset();
        }
    }
};
using Track = host_Object<std::unique_ptr<Loop>>;

PyObject* Next(PyObject* self) {
    return host_AtBorder([&]() -> PyObject* {
        Loop& loop = *Track::Of(self);
        if (loop.progress != nullptr && loop.hasItem) {
            loop.progress->Count();
        }
        PyObject* item = PyIter_Next(loop.iterator.Get());
        loop.hasItem = item != nullptr;
        if (item == nullptr) {
            if (PyErr_Occurred() != nullptr) {
                loop.GiveUp();
            }
            loop.progress.reset();
        }
        return item;
    });
}

/// A loop that was left before its end gives its progress up.
void Dealloc(PyObject* self) {
    Track::Of(self)->GiveUp();
    Track::Dealloc(self);
}

std::size_t TotalOf(PyObject* iterable, PyObject* total) {
    const Py_ssize_t count = total != Py_None ? PyNumber_AsSsize_t(total, PyExc_OverflowError)
                                              : PyObject_LengthHint(iterable, 0);
    if (count == -1 && PyErr_Occurred() != nullptr) {
        throw host_PythonError();
    }
    if (count < 0) {
        PyErr_SetString(PyExc_ValueError, "total must not be negative");
        throw host_PythonError();
    }
    return static_cast<std::size_t>(count);
}

}  // namespace

PyObject* host_Track(PyObject*, PyObject* arguments, PyObject* keywords) {
    return host_AtBorder([&] {
        PyObject* iterable = nullptr;
        const char* name = "Working";
        PyObject* total = Py_None;
        static char* words[] = {const_cast<char*>("iterable"), const_cast<char*>("name"),
                                const_cast<char*>("total"), nullptr};
        if (PyArg_ParseTupleAndKeywords(arguments, keywords, "O|sO:track", words, &iterable, &name,
                                        &total) == 0) {
            throw host_PythonError();
        }
        auto loop = std::make_unique<Loop>();
        loop->iterator = host_Made(PyObject_GetIter(iterable));
        loop->name = name;
        loop->progress =
            std::make_unique<host_Progress>(loop->name.c_str(), TotalOf(iterable, total));
        loop->progress->Look();  // items may take long
        if (const auto* reporter = host_ProgressReporter::OfThread();
            reporter != nullptr && reporter->HasBar()) {
            (void)host_CallSupport("share_terminal", Py_None);
        }
        return Track::New(std::move(loop)).Release();
    });
}

PyObject* host_ClearProgress(PyObject*, PyObject*) {
    if (auto* reporter = host_ProgressReporter::OfThread()) {
        reporter->Clear();
    }
    Py_RETURN_NONE;
}

void host_DefineTrack(PyObject* module) {
    static PyType_Slot slots[] = {{Py_tp_doc, host_Slot("The iterator of track().")},
                                  {Py_tp_dealloc, host_Slot(&Dealloc)},
                                  {Py_tp_iter, host_Slot(&PyObject_SelfIter)},
                                  {Py_tp_iternext, host_Slot(&Next)},
                                  {}};
    Track::Define(module, "caehost.Track", Py_TPFLAGS_DISALLOW_INSTANTIATION, slots);
}
