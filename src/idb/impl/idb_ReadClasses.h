#pragma once

#include "cls_MetadataRegistrar.h"
#include "idb_Cursor.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// One entry of a memento's table of classes, with what this program knows of the class.
struct idb_ReadClass {
    struct Field {
        std::string name;
        const cls_Attribute* attribute = nullptr;  // null for a field that the class lacks now
    };

    std::string name;
    int version = 0;
    const idb_ReadClass* base = nullptr;
    const cls_ClassMetadata* metadata = nullptr;  // null for levels that are not registered
    unsigned typeId = 0;
    std::size_t levels = 1;
    std::size_t firstField = 0;  // of the own fields among those of all levels
    std::vector<Field> own;
    std::size_t charge = 0;             // memory an object takes, about
    mutable unsigned inheritsFrom = 0;  // the class last found among its bases

    [[nodiscard]] std::size_t FieldCount() const noexcept { return firstField + own.size(); }
    [[nodiscard]] const Field& FieldAt(std::size_t index) const noexcept {
        const idb_ReadClass* level = this;
        while (index < level->firstField) {
            level = level->base;
        }
        return level->own[index - level->firstField];
    }
    [[nodiscard]] bool Inherits(unsigned baseTypeId) const {
        if (inheritsFrom != baseTypeId) {
            if (baseTypeId != 1 && !cls_ClassRegistrar::Inherits(typeId, baseTypeId)) {
                return false;
            }
            inheritsFrom = baseTypeId;
        }
        return true;
    }
    /// "class omu_PrimNumber (stored version 835, known version 835)".
    [[nodiscard]] std::string Described() const;
};

/// The table of classes of one memento.
class idb_ReadClasses {
public:
    /// Reads the table and checks it against the class system. Raises for unknown classes, newer
    /// versions, wrong bases and fields named twice.
    void Read(idb_Cursor& cursor, idb_Budget& budget);

    [[nodiscard]] std::size_t Count() const noexcept { return _classes.size(); }
    [[nodiscard]] const idb_ReadClass& operator[](std::size_t index) const {
        return *_classes[index];
    }

private:
    struct Known {
        unsigned typeId = 0;
        const cls_ClassMetadata* metadata = nullptr;
    };
    /// What this program knows under a stored name; a type identity of 0 for nothing.
    [[nodiscard]] const Known& Find(const std::string& name);
    [[nodiscard]] std::unique_ptr<idb_ReadClass> ReadEntry(idb_Cursor& cursor, idb_Budget& budget);
    void ReadFields(idb_ReadClass& entry, idb_Cursor& cursor, idb_Budget& budget);

    std::vector<std::unique_ptr<idb_ReadClass>> _classes;
    std::unordered_map<std::string, Known> _known;  // asked for already, by stored name
};

/// Takes \p bytes of the memory that building the memento's objects may need.
void idb_Charge(idb_Budget& budget, std::uint64_t bytes, std::size_t at);
