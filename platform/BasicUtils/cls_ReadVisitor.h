#pragma once

#include "atr_String.h"
#include "cls_Uid.h"
#include "cow_String.h"

#include <memory>
#include <vector>

struct cls_HolderOps;

/// Where a persistent object reads its fields from.
///
/// A visitor stands on one class level of one stored object (or, from List, on the elements of one
/// collection). Persistent classes read through it and never see a file. Every operation raises
/// the store's own error when the name is absent or holds something else.
class BASIC_API cls_ReadVisitor {
public:
    virtual ~cls_ReadVisitor();

    /// The visitor of the same object's base level.
    [[nodiscard]] virtual std::unique_ptr<cls_ReadVisitor> Base(unsigned typeId) const = 0;
    /// The identity stored with this class level.
    [[nodiscard]] virtual cls_Uid GetUid() const = 0;
    /// Whether a field of this name is there.
    [[nodiscard]] virtual bool Has(const char* name) const = 0;

    virtual void Read(const char* name, char& value) const = 0;
    virtual void Read(const char* name, bool& value) const = 0;
    virtual void Read(const char* name, int& value) const = 0;
    virtual void Read(const char* name, unsigned int& value) const = 0;
    virtual void Read(const char* name, float& value) const = 0;
    virtual void Read(const char* name, double& value) const = 0;
    virtual void Read(const char* name, cow_String& value) const = 0;
    virtual void Read(const char* name, atr_String& value) const = 0;
    virtual void Read(const char* name, std::vector<int>& values) const = 0;
    virtual void Read(const char* name, std::vector<float>& values) const = 0;
    virtual void Read(const char* name, std::vector<double>& values) const = 0;

    /// The visitor of a collection; its elements are read in order with any name.
    [[nodiscard]] virtual std::unique_ptr<cls_ReadVisitor> List(const char* name) const = 0;
    /// Number of elements of the collection this visitor stands on.
    [[nodiscard]] virtual int Count() const = 0;

    /// Builds the stored object, whose class must be \p baseTypeId or derived from it, by its
    /// metadata's Ctor. The caller owns the result; null for a stored null.
    [[nodiscard]] virtual void* ReadObject(const char* name, unsigned baseTypeId) const = 0;

    // What follows concerns objects reached in more than one way. A store that keeps no track of
    // them reads every one as an object of its own, as these do unless overridden.

    /// Reads an object into a copy-on-write holder; see cls_ReadShared.
    virtual void ReadShared(const char* name, unsigned baseTypeId, const cls_HolderOps& ops,
                            void* holder) const;
    /// As ReadObject, for an object that others may refer to, or that refers to others. The caller
    /// keeps it where it is for as long as the store is read, or fails.
    [[nodiscard]] virtual void* ReadOwned(const char* name, unsigned baseTypeId) const;
    /// Reads a reference to an object that its owner reads with ReadOwned; see cls_ReadReference.
    /// \p set(place, object) is called when the object is there, never for a null reference. The
    /// object that holds the reference must itself be read with ReadOwned.
    virtual void ReadReference(const char* name, unsigned baseTypeId, void* place,
                               void (*set)(void* place, void* object)) const;
};
