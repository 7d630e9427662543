#pragma once

/// Whether a field holds one value or several. The numbers stand in saved data and never change.
enum class cls_CollectionType : int {
    Single = 0,      ///< one value
    List = 54,       ///< values in order
    IntMap = 55,     ///< values by integer key, keys ascending
    StringMap = 56,  ///< values by text key, keys ascending
};
