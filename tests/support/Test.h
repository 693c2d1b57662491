// What every test of the logic and of the desktop begins with.
#pragma once

#include "tests/support/Files.h"
#include "tests/support/TestClass.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <chrono>

namespace kestrin::foundation {}
namespace kestrin::engine {}
namespace kestrin::runtime {}
namespace kestrin::desktop {}

// A source of tests is nobody's header, and what it speaks of has one name each.
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace kestrin;
using namespace kestrin::foundation;
using namespace kestrin::engine;
using namespace kestrin::runtime;
using namespace kestrin::desktop;
