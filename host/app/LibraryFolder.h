#pragma once

#include <QString>

/// Absolute path of the folder in which the host library lies, whoever loaded it from wherever.
QString getLibraryFolder();
