#pragma once

#include <QtWidgets/QStackedWidget>

/// The stack of pages, under a name that the form compiler does not know for a stack: it would make
/// each page without a parent, and all that is in the page would take on its style twice.
class PageStack : public QStackedWidget
{
public:
    using QStackedWidget::QStackedWidget;
};
