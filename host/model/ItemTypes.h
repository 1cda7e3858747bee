#pragma once

/// The application's item types, and the keys under which its tables show what the protocol says of an item.
/// They stand in data files and projects: a value never changes its meaning.

/// Item type of an element that is of no particular type.
constexpr int kGeneralItemType = 0x65ED7300;

constexpr int kPointItemType = 0x6DCD3700;
constexpr int kStationItemType = 0x6DCD3703;
constexpr int kSectionItemType = 0x6DCD3704; ///< measured way from one point to another
constexpr int kLineItemType = 0x6DCD3708;    ///< chain of sections
constexpr int kMarkItemType = 0x6DCD370F;
constexpr int kLoopItemType = 0x6DCD3711;
constexpr int kStaffItemType = 0x6DCD371B;
constexpr int kInstrumentItemType = 0x6DCD371C;

/// Read-only property of every item: whether the protocol mentions it.
constexpr int kWarningReportProperty = 0x6DCDDA04;
/// Delegate of the column that shows that property and opens the item's page.
constexpr int kWarningReportDelegate = 0x6DCD8F17;
