#pragma once
// Whether the machine is online, as far as a table at `address` needs: a loopback
// address needs the loopback interface up; any other address needs an interface other
// than loopback that is up and running. It tells a lost connection from a closed socket
// and says nothing of the far side.

#include <string>

bool InternetConnectedState(const std::string& address);
