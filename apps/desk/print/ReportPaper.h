#pragma once

#include "apps/desk/reports/ReportContent.h"

#include <QByteArray>

#include <functional>

class QPagedPaintDevice;

namespace orvel::desk {

/// Reports on paper: each sheet has a head, the head of the table that goes on, and its number among all.
namespace reportpaper {

/// Is told how much is done, in percent; false stops the work. Called in the thread that paints.
using Progress = std::function<bool(int percent)>;

/// Sheets to be printed, from 1; all with a last one of 0.
struct Range
{
    int first = 1;
    int last = 0;
};

/// Has the device's sheets lie so that the tables fit.
void orient(QPagedPaintDevice& device, const ReportContent& report);

/// Paints the report, in any thread. False if the work was stopped or the device could not begin.
bool paint(const ReportContent& report, QPagedPaintDevice& device, const Range& range = {},
           const Progress& progress = {});

/// The report as a PDF document on A4; empty if the work was stopped.
QByteArray makePdf(const ReportContent& report, const Progress& progress = {});

} // namespace reportpaper

} // namespace orvel::desk
