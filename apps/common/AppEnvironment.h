// Process set-up shared by the apps, and where the project's sample clip is found.
#pragma once

#include <QString>

namespace ZqtApps {

// Gives Qt a private runtime folder when the session has none (Qt warns on every start
// otherwise); with headless, also the offscreen platform unless one is chosen.
void prepareEnvironment(bool headless);

// The sample clip shipped with the project: where it is installed relative to the running
// program, else beside the sources (a program run from the build). Empty when neither exists.
// Needs the application object.
QString sampleClipPath();

} // namespace ZqtApps
