#include "host/app/LibraryFolder.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace {

// Stands in this library, whatever else is loaded.
const char kPlaceInLibrary = 0;

} // namespace

QString getLibraryFolder()
{
    Dl_info library = {};
    if (!::dladdr(&kPlaceInLibrary, &library))
        return {};
    return QFileInfo(QFile::decodeName(library.dli_fname)).canonicalPath();
}
