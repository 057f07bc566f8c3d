#pragma once

#include <QtCore/QStringList>

class QWidget;

/// What is wrong with a shown window's layout, one line each: texts that do not fit or have no
/// glyphs, siblings that overlap, children outside their parent. Empty when all is well.
QStringList layoutComplaints(const QWidget &window);

/// What a screen reader would miss in a shown window, one line each: focusable widgets and list
/// entries without name or role, and those that Tab does not reach.
QStringList accessibilityComplaints(const QWidget &window);
