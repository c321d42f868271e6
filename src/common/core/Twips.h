#pragma once

// Positions and sizes that the program stores (window positions, column widths) are in
// twips, as they always were: 15 to the logical pixel.
inline constexpr int kTwipsPerPixel = 15;
