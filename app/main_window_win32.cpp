// Placeholder: the main window lands with the foundation.
#include <windows.h>
