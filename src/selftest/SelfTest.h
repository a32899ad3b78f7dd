#pragma once

/// Part of the product: exercises the program's own logic against the live system, and reports what holds, a line a
/// check. It writes settings and puts most of them back; nothing else may run in the process. Main thread.
namespace SelfTest {

void run();

}
