#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QUrl>

/// Catches the links that the program opens in the browser, for as long as it lives.
class LinkCatcher : public QObject
{
    Q_OBJECT

public:
    LinkCatcher();
    ~LinkCatcher() override;

    const QList<QUrl> &links() const { return m_links; }

public Q_SLOTS:
    void open(const QUrl &link);

private:
    QList<QUrl> m_links;
};
