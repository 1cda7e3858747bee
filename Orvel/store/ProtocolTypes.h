#pragma once

#include "Orvel/orvel_export.h"

/// Host-wide key of the protocol: item type of `COrvel`, id of the protocol-type enumeration, and the key
/// under which the model initializer and the viewer extension are registered.
constexpr int kOrvelItemType = 0x12355F00;

namespace enums {

/// The kinds of run that keep a protocol. The values are stored in data files and in links.
enum OrvelType : int {
    UndefProtocol = 0x1235B700,
    Compile = 0x1235B701,
    Adjust = 0x1235B702,
    L1Analysis = 0x1235B703,
    Import = 0x1235B704,
    Export = 0x1235B705,
    ImportTemplate = 0x1235B706,
    FixedPointsAnalysis = 0x1235B707,
    AutoChainTracingAnalysis = 0x1235B708,
    CalcTacheometry = 0x1235B709
};

/// Registers the enumeration and its members with the host; does so once, however often it is called.
/// Loading the library calls it.
ORVEL_EXPORT void initEnumData_Orvel();

} // namespace enums
