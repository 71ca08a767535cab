// Process set-up shared by the apps, and where the project's sample clip is found.
#pragma once

#include <QString>

namespace ZqtApps {

// Gives Qt a private runtime folder when the session has none (Qt warns on every start
// otherwise); with headless, also the offscreen platform unless one is chosen.
void prepareEnvironment(bool headless);

// The sample clip shipped with the project: beside the sources when run from a build, else
// where it is installed. Empty when neither exists.
QString sampleClipPath();

} // namespace ZqtApps
