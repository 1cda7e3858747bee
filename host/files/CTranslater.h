#pragma once

#include "host/host_export.h"

#include <string>

class QString;

/// The application's translation lookup for wide strings.
class HOST_EXPORT CTranslater
{
public:
    static CTranslater& GetInstance(); ///< The one that the whole application uses.

    CTranslater(const CTranslater&) = delete;
    CTranslater& operator=(const CTranslater&) = delete;

    /// The translation of the text (UTF-8) in the context, or the text itself. May be called from any thread.
    std::wstring translate(const char* context, const char* text) const;

    /// Adds the translations of a .qm file for the rest of the program's run; they go before earlier ones.
    /// False if the file cannot be used, or without a QCoreApplication.
    bool loadTranslation(const QString& path);

private:
    CTranslater() = default;
};
