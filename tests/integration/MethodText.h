#pragma once

#include <QMetaObject>
#include <QStringList>

/// The methods that a class adds to those of its base, in their order: "public slot void show(int type)".
QStringList describeMethods(const QMetaObject& metaObject);
