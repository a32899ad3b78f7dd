#pragma once

/// Floating windows that look like alerts: dialogs above all others, notices. Main thread.
namespace AlertStage {

/// Lifts off the bar those that reach into it, of every program but this one.
void run();

}
