// Child process of the settings kill and many-writers tests: zqt_settings_writer STORE CLAIM KEY [COUNT]
// Reads the integer under KEY of CLAIM from the settings file STORE, then writes it again
// increased by one, over and over, until it is killed (or COUNT times). After each write returns
// it prints the value it wrote on a line of its own, so the parent knows which values were committed.
#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"
#include "platform/foundation/UserDefaults.h"

#include <QString>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    if (argc != 4 && argc != 5) {
        std::fprintf(stderr, "usage: zqt_settings_writer STORE CLAIM KEY [COUNT]\n");
        return 2;
    }
    ZQTPlatform::UserDefaults::standardUserDefaults().setFilePath(QString::fromLocal8Bit(argv[1]));
    const QString claim = QString::fromLocal8Bit(argv[2]);
    const QString key = QString::fromLocal8Bit(argv[3]);

    qintptr value = ZQTUserDefaults::integerForKey(key, claim);
    std::printf("start %lld\n", static_cast<long long>(value));
    std::fflush(stdout);
    const long long count = argc == 5 ? std::atoll(argv[4]) : -1;
    for (long long n = 0; n != count; ++n) {
        ZQTUserDefaults::setInteger(++value, key, claim);
        std::printf("%lld\n", static_cast<long long>(value));
        std::fflush(stdout);
    }
    return 0;
}
