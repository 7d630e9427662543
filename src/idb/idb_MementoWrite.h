#pragma once

#include "CaeUtilsExport.h"
#include "cls_WriteVisitor.h"
#include "mem_AllocationOperatorsTiny.h"

#include <cstddef>
#include <memory>
#include <vector>

class idb_WriteStore;

/// Writes objects into a memento: a block of bytes that idb_MementoRead reads back, and whose
/// format docs/memento.md tells.
///
/// The memento is itself a visitor. What is written through it are its named roots:
///
///     idb_MementoWrite memento;
///     memento.WriteObject("settings", cls_ObjectRef::Of(&settings));
///     idb_WriteListObj(memento, "parts", parts);
///     const std::vector<std::byte> bytes = memento.Finish();
///
/// Equal models give equal bytes: nothing depends on addresses, on who else shares an object, on
/// the locale or on the run. An object counts as the same by its address, never by its identity
/// number: a value and its later-changed copy are two objects. Objects that holders share are kept
/// alive, and so unchanged, until the memento is gone. One thread at a time.
///
/// A fault raises idb_MementoErrorException; the memento then gives no bytes.
class CAE_API idb_MementoWrite final : public cls_WriteVisitor, public mem_AllocationOperatorsTiny {
public:
    idb_MementoWrite();
    idb_MementoWrite(const idb_MementoWrite&) = delete;
    idb_MementoWrite& operator=(const idb_MementoWrite&) = delete;
    ~idb_MementoWrite() override;

    /// The memento's bytes. Nothing can be written afterwards.
    /// \throws idb_MementoErrorException  after an earlier fault, and when something refers to an
    /// object that nobody wrote with WriteOwned.
    [[nodiscard]] std::vector<std::byte> Finish();

    [[nodiscard]] bool StartWrite(unsigned typeId, const cls_Uid& uid) const override;
    [[nodiscard]] std::unique_ptr<cls_WriteVisitor> Base(unsigned typeId) const override;

    void Write(const char* name, char value) const override;
    void Write(const char* name, bool value) const override;
    void Write(const char* name, int value) const override;
    void Write(const char* name, unsigned int value) const override;
    void Write(const char* name, float value) const override;
    void Write(const char* name, double value) const override;
    void Write(const char* name, const cow_String& value) const override;
    void Write(const char* name, const atr_String& value) const override;
    void Write(const char* name, std::span<const int> values) const override;
    void Write(const char* name, std::span<const float> values) const override;
    void Write(const char* name, std::span<const double> values) const override;

    [[nodiscard]] std::unique_ptr<cls_WriteVisitor> List(const char* name,
                                                         int count) const override;
    void WriteObject(const char* name, const cls_ObjectRef& object) const override;
    void WriteShared(const char* name, const cls_ObjectRef& object,
                     const cls_HolderRef& holder) const override;
    void WriteOwned(const char* name, const cls_ObjectRef& object) const override;
    void WriteReference(const char* name, const cls_ObjectRef& object) const override;

private:
    friend class idb_WriteStore;

    /// Stands on class level \p level of the object, or on the list, that is frame \p frame.
    idb_MementoWrite(idb_WriteStore& store, std::size_t frame, unsigned level) noexcept;

    std::unique_ptr<idb_WriteStore> _own;  // the roots' visitor only
    idb_WriteStore* _store;
    std::size_t _frame = 0;
    unsigned _level = 0;
    bool _isList = false;
};
