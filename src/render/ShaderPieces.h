#pragma once

// The pieces of GLSL that ShaderText assembles, one constant for each choice of each slot.
//
// Slots of `vec2 p(in float a, in vec2 fragCoord)`, with `a` the field of view in radians:
//   output projection   reads fragCoord, leaves `vec3 screenPt`, what it shows in the camera's
//   frame toWorld             leaves `vec3 pt`, the direction in the world input projection reads
//   pt, leaves `vec2 uv`, 0 to 1 over the picture, its top row at 0
// The flat panning piece fills all three at once. Slots of `main`:
//   stereo              moves `a`, 0 to 1 over the whole picture, into this eye's half
//   effect              changes `vec3 frag`, the colour after the controls
//
// The camera looks along -z with y up; the screen point `s` runs from -1 to 1 over the shorter
// side. Literals are floats throughout: there is no #version line, and GLSL 1.10 converts nothing.

namespace shader::pieces {

extern const char vertex[];
extern const char header[];
extern const char uniforms[];
extern const char helpers[];

extern const char rectilinear[];
extern const char littlePlanet[];
extern const char fisheye[];
extern const char orvex[];
extern const char scaleCorrector[];
extern const char toWorld[];

extern const char equirectangular[];
extern const char yawPitchLimits[];
extern const char quarterTurn[];
extern const char fisheyeCircle[];
extern const char cubemap[];
extern const char flatPanning[];

extern const char mainStart[];
extern const char planarPanel[];
extern const char discardOutside[];
extern const char sampleOverlay[];

extern const char overUnder[];
extern const char sideBySide[];
extern const char overUnderInverted[];
extern const char sideBySideInverted[];

extern const char colorControls[];

extern const char sepia[];
extern const char blackAndWhite[];
extern const char tv[];
extern const char invert[];
extern const char redOnly[];
extern const char yellowOnly[];
extern const char blueOnly[];

extern const char mainEnd[];

extern const char blitStart[];

} // namespace shader::pieces
