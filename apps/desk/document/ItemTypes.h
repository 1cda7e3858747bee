#pragma once

/// Item types and properties of the desk's items.
constexpr int kPointItemType = 0x6DCD3700;
constexpr int kSectionItemType = 0x6DCD3704;

/// Registers the display texts of the item types, in the language that is installed. A protocol takes the
/// names of its groups when it is made, so this comes before the first project.
void registerItemTypes();
