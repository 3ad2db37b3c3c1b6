/// \file
/// What the class registry is told about the library's classes.
#pragma once

#include <string>

namespace zul {

class CAnyFactory;

/// Fields of one type, in declaration order.
struct TFieldRow {
    const char* Names;  ///< separated by blanks
    const char* Type;   ///< "long", or "CRef CBitmap" for a wrapper and what it wraps
    const char* Style;  ///< "static", "out" or null
};

/// One class. \p Package stands without the prefix that all have in common.
struct TClassRow {
    CAnyFactory* (*MakeFactory)();  ///< a new factory, null when there is no memory
    const char* Name;
    const char* Title;
    const char* Description;
    const char* Parent;
    const char* Package;
    const char* Module;
    const TFieldRow* Fields;  ///< ended by a row without names; null: none, and no support info either
};

/// The rows of all registered classes, in the order of registration, ended by a row without a name.
const TClassRow* GetClassRows();

/// The description document of a class: one line of XML, attributes in single quotes.
std::string MakeClassDocument(const TClassRow& row);

}  // namespace zul
