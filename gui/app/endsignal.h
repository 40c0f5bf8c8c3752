#pragma once

/// From now on SIGTERM and SIGINT end the event loop in order: what is being handled is handled to its end. Once in a
/// process, after the application object was made.
void EndOnSignal();
