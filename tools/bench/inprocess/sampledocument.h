#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QList>

/// Configuration documents of any size, in the form and wording of real ones.
namespace SampleDocument {

/// A document with this many products, a third in each category, and this many reasons.
QJsonObject document(int products, int reasons);

/// The text of a document of about so many bytes.
QByteArray textOfSize(int bytes);

} // namespace SampleDocument
