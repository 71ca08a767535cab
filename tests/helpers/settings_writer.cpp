// Child process of the settings kill test: zqt_settings_writer STORE CLAIM KEY
// Reads the integer under KEY of CLAIM from the settings file STORE, then writes it again
// increased by one, over and over, until it is killed. After each write returns it prints the
// value it wrote on a line of its own, so the parent knows which values were committed.
#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"
#include "platform/foundation/UserDefaults.h"

#include <QString>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: zqt_settings_writer STORE CLAIM KEY\n");
        return 2;
    }
    ZQTPlatform::UserDefaults::standardUserDefaults().setFilePath(QString::fromLocal8Bit(argv[1]));
    const QString claim = QString::fromLocal8Bit(argv[2]);
    const QString key = QString::fromLocal8Bit(argv[3]);

    qintptr value = ZQTUserDefaults::integerForKey(key, claim);
    std::printf("start %lld\n", static_cast<long long>(value));
    std::fflush(stdout);
    for (;;) {
        ZQTUserDefaults::setInteger(++value, key, claim);
        std::printf("%lld\n", static_cast<long long>(value));
        std::fflush(stdout);
    }
}
