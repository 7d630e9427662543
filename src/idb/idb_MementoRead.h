#pragma once

#include "CaeUtilsExport.h"
#include "cls_ReadVisitor.h"
#include "mem_AllocationOperatorsTiny.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class idb_ReadStore;
struct idb_ReadClass;

/// Where a reader stands among the values of one object or list; for use within idb.
struct idb_Sequence {
    std::size_t uids = 0;   ///< byte of an object's first identity
    std::size_t start = 0;  ///< byte of value 0
    std::size_t at = 0;     ///< byte of value \c next
    std::uint64_t next = 0;
    std::uint64_t count = 0;
    bool isKept = false;  ///< an object that stays where it is: read with ReadOwned
};

/// Reads a memento that idb_MementoWrite made.
///
/// The constructor checks all of it without building anything: frame, checksum, lengths, nesting,
/// classes and versions, references, types of fields. The memento is then a visitor whose fields
/// are the named roots:
///
///     const idb_MementoRead memento(bytes);
///     auto parts = idb_ReadListObj<Part>(memento, "parts");
///     memento.Finish();
///
/// A field that a class lacks now is skipped; one that the memento lacks is not there (Has). What
/// is read is not trusted: every fault raises idb_MementoErrorException, and reading takes at most
/// 16 times the memento's size plus 1 MiB of memory. Build aside, and swap in after Finish: once an
/// object could not be built, every further operation raises. One thread at a time.
class CAE_API idb_MementoRead final : public cls_ReadVisitor, public mem_AllocationOperatorsTiny {
public:
    /// \param bytes  not copied; they must stay as long as this object.
    explicit idb_MementoRead(std::span<const std::byte> bytes);
    idb_MementoRead(const idb_MementoRead&) = delete;
    idb_MementoRead& operator=(const idb_MementoRead&) = delete;
    ~idb_MementoRead() override;

    /// To be called when everything is read, while the objects read with ReadOwned are all there.
    /// \throws idb_MementoErrorException  after an earlier fault, and when a reference leads to an
    /// object that was not read.
    void Finish() const;
    /// Names of the roots, in the order in which they were written.
    [[nodiscard]] std::vector<cow_String> Roots() const;

    [[nodiscard]] std::unique_ptr<cls_ReadVisitor> Base(unsigned typeId) const override;
    [[nodiscard]] cls_Uid GetUid() const override;
    [[nodiscard]] bool Has(const char* name) const override;

    void Read(const char* name, char& value) const override;
    void Read(const char* name, bool& value) const override;
    void Read(const char* name, int& value) const override;
    void Read(const char* name, unsigned int& value) const override;
    void Read(const char* name, float& value) const override;
    void Read(const char* name, double& value) const override;
    void Read(const char* name, cow_String& value) const override;
    void Read(const char* name, atr_String& value) const override;
    void Read(const char* name, std::vector<int>& values) const override;
    void Read(const char* name, std::vector<float>& values) const override;
    void Read(const char* name, std::vector<double>& values) const override;

    [[nodiscard]] std::unique_ptr<cls_ReadVisitor> List(const char* name) const override;
    [[nodiscard]] int Count() const override;
    [[nodiscard]] void* ReadObject(const char* name, unsigned baseTypeId) const override;
    void ReadShared(const char* name, unsigned baseTypeId, const cls_HolderOps& ops,
                    void* holder) const override;
    [[nodiscard]] void* ReadOwned(const char* name, unsigned baseTypeId) const override;
    void ReadReference(const char* name, unsigned baseTypeId, void* place,
                       void (*set)(void* place, void* object)) const override;

private:
    friend class idb_ReadStore;
    class Value;

    explicit idb_MementoRead(idb_ReadStore& store) noexcept;

    [[nodiscard]] int FieldIndex(const char* name) const;
    void EndList() const;
    template <class Text>
    void ReadText(const char* name, Text& value) const;
    template <class N>
    void ReadNumbers(const char* name, std::uint64_t tag, std::vector<N>& values,
                     const char* expected) const;
    [[nodiscard]] bool IsRoots() const noexcept { return _sequence == nullptr; }

    std::unique_ptr<idb_ReadStore> _own;  // the roots' visitor only
    idb_ReadStore* _store;
    idb_Sequence* _sequence = nullptr;      // null for the roots
    const idb_ReadClass* _class = nullptr;  // of the level; null for roots and lists
    unsigned _level = 0;
    mutable std::size_t _expected = 0;  // the field that is probably asked for next
    idb_Sequence _elements;             // of a list
    idb_Sequence* _parent = nullptr;    // of a list: where it lies
    std::uint64_t _place = 0;
};
