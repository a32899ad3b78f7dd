#pragma once

/// The login agent that gives the system's settings back at the next login after a crash, without this program: a shell
/// script that looks for the dirty flag, and the property list that has it run. Main thread.
namespace DockRepair {

void installAgent();
void removeAgent();
/// Those of the program under its former names.
void removeLegacyAgents();
/// Whether the property list is there.
bool isAgentInstalled();

}
