// Where tests leave files for a person to look at: <build>/test-artifacts/.
#pragma once

#include <QString>

namespace Artifacts {

// Path of a file in the artifact folder (the folder is created).
QString path(const QString &fileName);

} // namespace Artifacts
