#pragma once

#include "atr_String.h"
#include "cls_Uid.h"
#include "cow_String.h"

#include <memory>
#include <span>

class cls_WriteVisitor;
struct cls_HolderOps;

/// A persistent object seen without its type: what a store needs to write it. Does not own it.
struct cls_ObjectRef {
    unsigned typeId = 0;
    const void* object = nullptr;  ///< null writes a null object
    void (*dbWrite)(const void*, const cls_WriteVisitor&) = nullptr;

    template <class T>
    [[nodiscard]] static cls_ObjectRef Of(const T* object) {
        if (object == nullptr) {
            return {};
        }
        return {object->DynTypeId(), object, [](const void* erased, const cls_WriteVisitor& to) {
                    static_cast<const T*>(erased)->DBWrite(to);
                }};
    }
};

/// A copy-on-write holder seen without its type. Does not own it.
struct cls_HolderRef {
    const cls_HolderOps* ops;
    const void* holder;
    bool isShared;  ///< whether it is not the only holder of its object
};

/// Where a persistent object writes its fields to.
///
/// A visitor stands on one object (or, from List, on one collection). Each class level opens with
/// StartWrite, writes its base level through Base, then its own fields by name.
class BASIC_API cls_WriteVisitor {
public:
    virtual ~cls_WriteVisitor();

    /// Opens a class level; false when it was written already and nothing more is to be written.
    [[nodiscard]] virtual bool StartWrite(unsigned typeId, const cls_Uid& uid) const = 0;
    /// The visitor for the base level of the object being written.
    [[nodiscard]] virtual std::unique_ptr<cls_WriteVisitor> Base(unsigned typeId) const = 0;

    virtual void Write(const char* name, char value) const = 0;
    virtual void Write(const char* name, bool value) const = 0;
    virtual void Write(const char* name, int value) const = 0;
    virtual void Write(const char* name, unsigned int value) const = 0;
    virtual void Write(const char* name, float value) const = 0;
    virtual void Write(const char* name, double value) const = 0;
    virtual void Write(const char* name, const cow_String& value) const = 0;
    virtual void Write(const char* name, const atr_String& value) const = 0;
    virtual void Write(const char* name, std::span<const int> values) const = 0;
    virtual void Write(const char* name, std::span<const float> values) const = 0;
    virtual void Write(const char* name, std::span<const double> values) const = 0;

    /// Opens a collection of \p count elements; they are written in order, with any name.
    [[nodiscard]] virtual std::unique_ptr<cls_WriteVisitor> List(const char* name,
                                                                 int count) const = 0;
    virtual void WriteObject(const char* name, const cls_ObjectRef& object) const = 0;

    // What follows concerns objects reached in more than one way. A store that keeps no track of
    // them writes every one as an object of its own, as these do unless overridden.

    /// Writes an object that a copy-on-write holder shares; see cls_WriteShared.
    virtual void WriteShared(const char* name, const cls_ObjectRef& object,
                             const cls_HolderRef& holder) const;
    /// As WriteObject, for an object that others may refer to, or that refers to others. It stays
    /// where it is until the store is finished.
    virtual void WriteOwned(const char* name, const cls_ObjectRef& object) const;
    /// Writes a reference to an object that its owner writes, before or later, with WriteOwned.
    virtual void WriteReference(const char* name, const cls_ObjectRef& object) const;
};
