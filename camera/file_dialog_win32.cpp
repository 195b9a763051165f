// The file-open dialog seam on the system's IFileOpenDialog: no owner, no filters,
// default options; the chosen item's file-system path.
#include <shobjidl.h>
#include <windows.h>

#include "camera/file_dialog.h"

bool fileDialogAskOpen(std::wstring& path) {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {
    return false;
  }
  IFileOpenDialog* dialog = nullptr;
  bool chosen = false;
  if (SUCCEEDED(CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_ALL, IID_IFileOpenDialog,
                                 reinterpret_cast<void**>(&dialog)))) {
    if (SUCCEEDED(dialog->Show(nullptr))) {
      IShellItem* item = nullptr;
      if (SUCCEEDED(dialog->GetResult(&item))) {
        PWSTR filePath = nullptr;
        if (SUCCEEDED(item->GetDisplayName(SIGDN_FILESYSPATH, &filePath))) {
          path = filePath;
          CoTaskMemFree(filePath);
          chosen = true;
        }
        item->Release();
      }
    }
    dialog->Release();
  }
  return chosen;
}
