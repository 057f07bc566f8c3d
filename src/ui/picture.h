#pragma once

#include <QtCore/QtGlobal>
#include <optional>

class QIODevice;
class QString;
class QWidget;

namespace Look {

/// What a picture takes in memory, in bytes.
struct PictureCost
{
    qint64 decoding; ///< at the most, while it is decoded
    qint64 shown;    ///< as long as it is shown
};

/// Reads from a picture's head what its decoder will allocate, without decoding anything. None when
/// it is neither PNG nor JPEG: nothing else is decoded. The device must be open and seekable.
std::optional<PictureCost> pictureCost(QIODevice &picture);

/// Fills a plain QWidget with a picture, and with none when the file is neither PNG nor JPEG, when
/// it takes too much memory to decode, or when the pictures that are shown elsewhere leave no room.
/// The program's own resources are always shown. GUI thread only.
void showPicture(QWidget &widget, const QString &path);

} // namespace Look
