// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QTest>

/// A room has one test program for all of its test classes. Each class runs in a process of its
/// own, since applications, buses and web engines are made once a process:
///
///     airline_tests                              all classes, one after the other
///     airline_tests --filter TestEngine [...]    one; the rest is Qt Test's own
struct TestClass {
    using Main = int (*)(int argc, char* argv[]);

    /// Adds a class to its program.
    TestClass(const char* name, Main main);
};

/// The path of a program of this build, such as "tindra".
QString builtProgram(const QString& name);

/// Begins what would be the `main` of a program with this class alone: it makes the world that the
/// class needs, and ends with QTest::qExec.
#define TINDRA_TEST_MAIN(Test)                                                                     \
    static int main##Test(int argc, char* argv[]);                                                 \
    static const TestClass add##Test(#Test, main##Test);                                           \
    static int main##Test(int argc, char* argv[])

/// Adds a test class that needs an event loop, and nothing else.
#define TINDRA_TEST(Test)                                                                          \
    TINDRA_TEST_MAIN(Test) {                                                                       \
        const QCoreApplication application(argc, argv);                                            \
        Test test;                                                                                 \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
