#pragma once

#include "upgrade/upgradetypes.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <atomic>

class QThread;

/// Asks the maker's upgrade library for an update and downloads it, on a thread of its own, because
/// the library's calls block until they are done.
///
/// The public operations are for the GUI thread; the slots run in the helper's thread, one at a
/// time, in the order of the requests. The signals come from that thread, progress from whichever
/// thread the library uses, so that receivers in the GUI thread get them queued.
///
/// A library call cannot be interrupted: a request to stop reaches the library only when the call
/// before it has returned.
class NvUpgradeHelper : public QObject
{
    Q_OBJECT

public:
    /// The only helper, made on first use.
    static NvUpgradeHelper *instance();

    /// Deletes the helper, if any. Waits, without limit, for a library call in progress. Must be
    /// called while the application object exists.
    static void release();

    /// Whether a request is waiting or in progress.
    static bool isBusy();

    /// Deletes the helper unless a request is waiting or in progress: then release() would wait for
    /// the library, however long that takes. Returns true when there is no helper any more.
    static bool releaseIfIdle();

    /// Full name of "Back_UpdateInfo.json", the helper's copy of the update description file.
    static QString updateInfoFile();

    /// Asks for an update; s_CheckFinish() is the answer.
    void checkUpgrade(const checkInPraram &params);

    /// Downloads the package; s_DownProgress() and s_DownFinish() are the answer.
    void downloadPackage(const downloadInPraram &params);

    /// Asks the library to stop what it is doing.
    void stop();

    /// True from downloadPackage() until just before s_DownFinish().
    bool isDownloadRequested() const;

    /// What the last successful check, the last download and the update description file said.
    /// The helper's thread writes these while it works on a request: read them only after the
    /// finish signal, and before the next request.
    checkOutParam checkResult() const;
    downloadOutParam downloadResult() const;
    UpdateInfo updateInfo() const;

    /// Reads "Back_UpdateInfo.json" again. When it is missing or no JSON, nothing changes.
    void reloadUpdateInfo();

Q_SIGNALS:
    /// iPercent is what the library reports, unchanged.
    void s_DownProgress(int iPercent);

    /// bRtn tells whether the library reported success; downloadResult() has the details.
    void s_DownFinish(bool bRtn);

    /// A failed check (errcode not 0) is reported here only; checkResult() keeps the last success.
    /// An answer that is no JSON counts as a success with empty data.
    void s_CheckFinish(checkOutParam params);

    // From the public operations to the helper's thread.
    void s_startDownloadPackage(downloadInPraram params);
    void s_checkUpgrade(checkInPraram params);
    void s_stop();

public Q_SLOTS:
    void slot_downloadPackage(downloadInPraram params);
    void shot_checkUpgrade(checkInPraram params);
    void slot_stop();

private:
    NvUpgradeHelper();
    ~NvUpgradeHelper() override;

    void ensureThreadRuns();
    void takeOverUpdateInfo(const std::string &describedBy);

    static NvUpgradeHelper *s_instance;

    downloadOutParam m_downloadResult;
    checkOutParam m_checkResult;
    UpdateInfo m_updateInfo;
    QThread *m_thread;
    std::atomic<bool> m_downloadRequested{false};
    std::atomic<int> m_openRequests{0};
};
