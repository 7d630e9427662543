#pragma once

/// How a persisted field is stored. The numbers stand in saved data and never change.
enum class cls_AttributeType : int {
    Tag = 1,                ///< a one-character kind code
    Int = 5,                ///< int
    UnsignedInt = 7,        ///< unsigned int
    Float = 9,              ///< float
    Double = 10,            ///< double
    String = 11,            ///< cow_String, or translatable text stored as its characters
    TranslatedString = 12,  ///< atr_String
    Bool = 13,              ///< bool
    Enum = 14,              ///< an enumeration, stored as its integer
    Object = 15,            ///< an object of a registered class
};
