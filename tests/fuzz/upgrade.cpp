// What the upgrade library may answer, and the update description file. The first byte says which;
// the rest is the text.

#include "platform/narrowtext.h"
#include "tests/fuzz/target.h"
#include "upgrade/upgradejson.h"

int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/)
{
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    // An answer goes through wide characters, 1024 of them at most.
    const std::string text(reinterpret_cast<const char *>(data + 1), size - 1);
    const std::string answer =
        Platform::narrowFromWide(Platform::wideFromNarrow(text).substr(0, 1023));
    switch (data[0] % 4) {
    case 0: {
        const checkOutParam result = UpgradeJson::checkAnswer(answer);
        Fuzz::require(result.errcode == 0 || (!result.needupgrade && result.path.empty()),
                      "a failed check offers nothing");
        break;
    }
    case 1: {
        const downloadOutParam result = UpgradeJson::downloadAnswer(answer);
        Fuzz::require(result.errcode == 0 || (!result.downloaded && result.path.empty()),
                      "a failed download has no package");
        break;
    }
    case 2:
        UpgradeJson::updateInfo(text);
        break;
    default: {
        // What came as an answer goes out again with the next request, and stays one line.
        downloadInPraram request;
        request.version = answer;
        request.path = answer;
        const std::string line = UpgradeJson::downloadRequest(request);
        Fuzz::require(line.find('\n') == line.size() - 1, "a request is one line");
        break;
    }
    }
    return 0;
}
