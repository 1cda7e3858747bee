#pragma once

#include <QtGlobal>

/// Identifier of a model item, unique within its project. 0 stands for no item.
using LONGID = qint64;
