#include "fuzz/world.h"
#include "support/ui/modfreeimage.h"
#include "windowing/application.h"
#include "windowing/form.h"
#include "windowing/picturebox.h"

#include <stdlib.h>

// From a picture's file to the picture on a page, and into a mod's page.
namespace {

struct PictureForm : win::Form {
  PictureForm() : Form("frmPicture", 3000, 3000) { box.Move(0, 0, 1200, 1200); }
  win::PictureBox box{*this, "imgmap"};
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  fuzz::TheWorld();
  static win::Application application;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static PictureForm form;
  const std::string path = fuzz::TheWorld().Put("map.png", fuzz::Text(data, size));
  varnik::ShowPictureFile(path, form.box);
  win::Picture::FromFile(path);
  return 0;
}
