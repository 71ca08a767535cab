// The state every test process starts from: a throwaway HOME with its own standard folders, set
// before the application object exists, and a listener that leaves no claim photos and the real
// screen as the device profile after each test, so that tests sharing one process start from the
// same state as a test alone in its process.
#pragma once

class QTemporaryDir;

namespace TestEnvironment {

// Points HOME, the XDG folders and Qt's standard paths into the directory. false when it is not
// usable.
bool useThrowawayHome(const QTemporaryDir &home);
// Registers the after-each-test clean-up with GoogleTest (after InitGoogleTest).
void cleanUpAfterEachTest();

} // namespace TestEnvironment
