#pragma once

class ConfigDownloader;
class QTimer;
class SplashWindow;

namespace Startup {

/// Runs the downloader in an event loop while the splash is shown: until it has finished, until ten
/// seconds have passed on the limit, which is started here, or until the user closes the splash,
/// which is then hidden. What still runs is aborted.
void loadConfiguration(ConfigDownloader &downloader, QTimer &limit, SplashWindow &splash);

} // namespace Startup
