#pragma once

#include "host/host_export.h"

#include <string>

/// One value of an enumeration of the application: its internal name and its display texts.
class HOST_EXPORT EnumData
{
public:
    /// All texts in UTF-8.
    EnumData(int enumValue, const std::string& internal, const std::string& singular,
             const std::string& plural);

    int getValue() const; ///< The value of the enumeration.
    /// Internal name, UTF-8.
    std::string getTextInternal() const;
    std::wstring getTextSingular() const; ///< Name of one such thing, as the user reads it.
    std::wstring getTextPlural() const;   ///< Name of several, as the user reads it.

private:
    int value;
    std::string textInternal;
    std::string textSingular;
    std::string textPlural;
};

/// Adds the record to the application's enumerations; an earlier one of the same value is replaced. May be
/// called from any thread and from static initializers.
HOST_EXPORT void registerEnumData(const EnumData& record);

/// The record of the value; for an unknown value one whose texts are empty. May be called from any thread.
HOST_EXPORT EnumData getEnumData(int value);
