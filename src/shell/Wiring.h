#pragma once

// Wires the features together: tells the form registry how each feature's forms are made.
// The features never include one another; they reach each other only through what this
// installs. Start-up calls it once, as does the test fixture.
void WireFeatures();
