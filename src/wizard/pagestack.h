#pragma once

#include <QtWidgets/QStackedWidget>

/// The stack of pages. For a QStackedWidget the form compiler makes the pages without a parent, and
/// the style sheet is applied to everything in them a second time when they are added.
class PageStack : public QStackedWidget
{
public:
    using QStackedWidget::QStackedWidget;
};
