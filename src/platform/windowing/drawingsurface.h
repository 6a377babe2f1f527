#pragma once

#include "windowing/drawing.h"

#include <QImage>

namespace win {

// What a device context of a window draws on.
class DrawingSurface {
 public:
  virtual ~DrawingSurface() = default;
  virtual QImage& Canvas() = 0;
  virtual void Drawn() = 0;
};

// A device context for as long as the surface lives.
DrawingHandle AddSurface(DrawingSurface* surface);
void RemoveSurface(DrawingHandle dc);

}  // namespace win
