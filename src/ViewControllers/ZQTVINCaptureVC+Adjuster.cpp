// The capture screen's adjuster menu: the contact panel of the claim's adjuster.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "UI/Views/ZQTVINScanAdjusterInfo.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/foundation/Log.h"

using namespace ZQTPlatform;

namespace {
constexpr uint adjusterMenuEvent = 3;
} // namespace

void ZQTVINCaptureVC::showAdjusterInfo()
{
    logStep("showAdjusterInfo");
    pushAnalyticsInfoForEventType(adjusterMenuEvent, QStringLiteral(""));
    ZQTVINScanAdjusterInfo::showInViewController(this, d->adjusterInfo);
}
