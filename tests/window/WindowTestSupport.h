// What the real-window tests share: a phone-sized window on the X server with the capture screen
// pushed on its navigation stack, over a steady camera picture of two halves.
#pragma once

#include "ZQTVINScanComponent.h"
#include "support/ScreenTestSupport.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QTest>

class RealWindow : public ScreenSessionTest
{
public:
    static inline const QColor cameraLeftHalf = QColor(70, 120, 90);
    static inline const QColor cameraRightHalf = QColor(120, 90, 70);

protected:
    void SetUp() override
    {
        QImage street(640, 480, QImage::Format_RGB32);
        street.fill(cameraLeftHalf);
        QPainter(&street).fillRect(320, 0, 320, 480, cameraRightHalf);
        ASSERT_TRUE(ZQTPlatform::CaptureDevice::addStandIn(street));
    }

    // Pushes the screen, shows the window on the X server and waits until the screen scans or
    // prompts.
    ZQTVINCaptureVC *show(ZQTVINCaptureVC *pushed)
    {
        screen = pushed;
        const QSize size = host.window.size();
        const qsizetype starts = startUps(capture);
        host.navigation->pushViewController(pushed, false);
        host.window.makeKeyAndVisible();
        host.window.resize(size); // the scene's minimum may have grown it while showing
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&host.window));
        EXPECT_TRUE(QTest::qWaitFor([&] { return startUps(capture) > starts; }, 5000));
        return pushed;
    }
};
