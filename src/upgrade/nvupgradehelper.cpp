#include "upgrade/nvupgradehelper.h"

#include "app/env/appenv.h"
#include "platform/narrowtext.h"
#include "upgrade/upgradejson.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <algorithm>
#include <array>
#include <atomic>
#include <nvupgrade.h>
#include <utility>

namespace {

/// The buffer for the library's answer, and the answer as narrow text.
class Answer
{
public:
    wchar_t *buffer() { return m_characters.data(); }
    int capacity() const { return static_cast<int>(m_characters.size()); }

    std::string narrow() const
    {
        const auto end = std::find(m_characters.begin(), m_characters.end(), L'\0');
        return Platform::narrowFromWide(std::wstring(m_characters.begin(), end));
    }

private:
    std::array<wchar_t, 1024> m_characters{};
};

/// The helper whose download is in progress, or null. The library may report progress once more
/// after the call has returned, when the helper that it names may have been deleted.
std::atomic<void *> downloader{nullptr};

void reportProgress(int percent, void *context)
{
    if (context && context == downloader)
        Q_EMIT static_cast<NvUpgradeHelper *>(context)->s_DownProgress(percent);
}

bool isFile(const QString &fileName)
{
    return !fileName.contains(QChar::Null) && QFileInfo(fileName).isFile();
}

} // namespace

NvUpgradeHelper *NvUpgradeHelper::s_instance = nullptr;

NvUpgradeHelper *NvUpgradeHelper::instance()
{
    if (!s_instance)
        s_instance = new NvUpgradeHelper;
    return s_instance;
}

void NvUpgradeHelper::release()
{
    delete std::exchange(s_instance, nullptr);
}

bool NvUpgradeHelper::releaseIfIdle()
{
    if (!isBusy())
        release();
    return !s_instance;
}

bool NvUpgradeHelper::isBusy()
{
    return s_instance && s_instance->m_openRequests != 0;
}

QString NvUpgradeHelper::updateInfoFile()
{
    return AppEnv::productDataDir() + QStringLiteral("/Back_UpdateInfo.json");
}

NvUpgradeHelper::NvUpgradeHelper()
    : m_thread(new QThread(this))
{
    qRegisterMetaType<checkInPraram>("checkInPraram");
    qRegisterMetaType<checkOutParam>("checkOutParam");
    qRegisterMetaType<downloadInPraram>("downloadInPraram");
    qRegisterMetaType<std::string>("std::string");

    connect(this, &NvUpgradeHelper::s_checkUpgrade, this, &NvUpgradeHelper::shot_checkUpgrade);
    connect(this, &NvUpgradeHelper::s_startDownloadPackage, this,
            &NvUpgradeHelper::slot_downloadPackage);
    connect(this, &NvUpgradeHelper::s_stop, this, &NvUpgradeHelper::slot_stop);

    // The thread object, a child, moves along. It receives no events, so that once its thread has
    // ended any thread may delete it with its parent.
    moveToThread(m_thread);
    m_thread->start();
    reloadUpdateInfo();
}

NvUpgradeHelper::~NvUpgradeHelper()
{
    ensureThreadRuns();
    ++m_openRequests;
    Q_EMIT s_stop();
    m_thread->exit(0);
    m_thread->wait();
}

void NvUpgradeHelper::checkUpgrade(const checkInPraram &params)
{
    ensureThreadRuns();
    ++m_openRequests;
    Q_EMIT s_checkUpgrade(params);
}

void NvUpgradeHelper::downloadPackage(const downloadInPraram &params)
{
    ensureThreadRuns();
    m_downloadRequested = true;
    ++m_openRequests;
    Q_EMIT s_startDownloadPackage(params);
}

void NvUpgradeHelper::stop()
{
    ensureThreadRuns();
    ++m_openRequests;
    Q_EMIT s_stop();
}

bool NvUpgradeHelper::isDownloadRequested() const
{
    return m_downloadRequested;
}

checkOutParam NvUpgradeHelper::checkResult() const
{
    return m_checkResult;
}

downloadOutParam NvUpgradeHelper::downloadResult() const
{
    return m_downloadResult;
}

UpdateInfo NvUpgradeHelper::updateInfo() const
{
    return m_updateInfo;
}

void NvUpgradeHelper::reloadUpdateInfo()
{
    QFile file(updateInfoFile());
    if (AppEnv::isSpecialFile(file.fileName()) || !file.open(QIODevice::ReadOnly))
        return;
    if (std::optional<UpdateInfo> info = UpgradeJson::updateInfo(file.readAll().toStdString()))
        m_updateInfo = std::move(*info);
}

// The signatures are fixed: arguments by value. A queued call copies them anyway.

// NOLINTNEXTLINE(performance-unnecessary-value-param)
void NvUpgradeHelper::shot_checkUpgrade(checkInPraram params)
{
    Answer answer;
    check_upgrade_c(Platform::wideFromNarrow(UpgradeJson::checkRequest(params)).c_str(),
                    answer.buffer(), answer.capacity());

    checkOutParam result = UpgradeJson::checkAnswer(answer.narrow());
    if (result.errcode == 0) {
        takeOverUpdateInfo(result.path);
        m_checkResult = result;
    }
    result.requestId = params.requestId;
    Q_EMIT s_CheckFinish(result);
    --m_openRequests;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
void NvUpgradeHelper::slot_downloadPackage(downloadInPraram params)
{
    Answer answer;
    downloader = this;
    download_package_c(Platform::wideFromNarrow(UpgradeJson::downloadRequest(params)).c_str(),
                       answer.buffer(), answer.capacity(), reportProgress, this);
    downloader = nullptr;

    m_downloadResult = UpgradeJson::downloadAnswer(answer.narrow());
    const bool success = m_downloadResult.errcode == 0;
    if (success)
        takeOverUpdateInfo(m_checkResult.path);
    m_downloadResult.requestId = params.requestId;
    m_downloadRequested = false;
    Q_EMIT s_DownFinish(success);
    --m_openRequests;
}

void NvUpgradeHelper::slot_stop()
{
    ::stop();
    --m_openRequests;
}

void NvUpgradeHelper::ensureThreadRuns()
{
    if (!m_thread->isRunning())
        m_thread->start();
}

/// Copies the update description file, when the library's answer names one, and reads the copy.
void NvUpgradeHelper::takeOverUpdateInfo(const std::string &describedBy)
{
    const QString source = Platform::fromNarrow(describedBy);
    const QString target = updateInfoFile();
    // Remove the earlier bytes last: the disk may be full, or the answer may name the target.
    const QString copy = target + QStringLiteral(".~tmp");
    QFile::remove(copy);
    if (isFile(source) && QFile::copy(source, copy)) {
        QFile::remove(target);
        if (!QFile::rename(copy, target))
            QFile::remove(copy);
    }
    reloadUpdateInfo();
}
