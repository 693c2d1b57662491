#pragma once

#include <QStringList>

/// How long something may take that has to happen, in milliseconds.
constexpr int patience = 20'000;

/// What a second process of the user defaults' test does: "describe" tells what is stored, "set" stores true
/// first.
QString actOnUserDefaults(const QString &action);
