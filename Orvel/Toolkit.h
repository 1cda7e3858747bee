#pragma once

/// What the library offers to other modules of the host beside its classes (`COrvel`, `COVMessage`,
/// `OrvelProcessMonitor`, `OrvelGUIExtension`, `CReportDelegate`) and the protocol types:
///
/// - `orvel::ExceptionCatcher` runs an action of the user and turns what it throws into a message;
/// - `orvel::SavedProtocol` keeps a protocol in the host's project;
/// - `orvel::datafile::readCanonical`, `visitCanonical` and `write` read and write the messages of a data
///   file without touching the protocol.
///
/// Whatever else stands in the headers of this folder is the library's own and not exported.
#include "Orvel/integration/ExceptionCatcher.h" // IWYU pragma: export
#include "Orvel/store/DataFileReader.h"         // IWYU pragma: export
#include "Orvel/store/DataFileWriter.h"         // IWYU pragma: export
#include "Orvel/store/SavedProtocol.h"          // IWYU pragma: export
