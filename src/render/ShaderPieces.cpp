#include "render/ShaderPieces.h"

namespace shader::pieces {

const char vertex[] = R"(attribute highp vec4 vertex;
uniform highp mat4 matrix;
attribute vec4 texture;
varying highp vec4 texCoord;
void main(){
gl_Position = matrix * vertex;
texCoord = texture;
}
)";

const char header[] = "#ifdef GL_ES \nprecision highp float; \n#endif \n"
                      "#define pi 3.141592654\n"
                      "#define halfpi 1.570796327\n"
                      "#define twopi 6.283185308\n"
                      "#define toEquiTexCoords(a) (vec2(a.x / twopi, a.y / pi))\n";

const char uniforms[] = R"(varying highp vec4 texCoord;
uniform sampler2D uSampler;
uniform mat4 uMatViewInverse;
uniform mat4 uColorMatrix;
uniform float uBrightness;
uniform float uContrast;
uniform float uHue;
uniform float uSaturation;
uniform float uVibrance;
uniform float uFov;
uniform float uTime;
uniform float uVignettingRadius;
uniform float uVignettingAmount;
uniform vec2 uViewportSize;
uniform vec2 uViewportSizeMin;
uniform vec2 uViewportSizeRatio;
uniform float uScaleCorrector;
uniform int uEye;
uniform float uCameraYaw;
uniform float uCameraPitch;
uniform float uYawMin;
uniform float uYawMax;
uniform float uPitchMin;
uniform float uPitchMax;
uniform float uProjScale;
uniform float uProjectionDistance;
)";

// falloff() is smoothstep() for edges in either order, which the language leaves undefined.
const char helpers[] = R"(vec3 toSpherical(in vec3 a){
float b,c,d;
b=length(a);c=-atan(a.x,a.z);c+=(1.0-step(0.0,c))*twopi;d=acos(clamp(a.y/b,-1.0,1.0));
return vec3(b,c,d);}
vec3 toCartesian(in vec3 rtp){
float r = rtp.x;
float theta = rtp.y;
float phi = rtp.z;
return vec3(r * sin(theta) * sin(phi), r * cos(theta) * sin(phi), r * cos(phi));}
vec2 fragCoord(){return vec2(texCoord.x * uViewportSize.x, texCoord.y * uViewportSize.y);}
mat4 getMatViewInverse(){return uMatViewInverse;}
float falloff(in float from, in float to, in float x){
float t = clamp((x - from) / (to - from), 0.0, 1.0);
return t * t * (3.0 - 2.0 * t);}
)";

#define SCREEN_POINT "vec2 s = 2.0 * fragCoord / uViewportSizeMin - uViewportSizeRatio;\n"

const char rectilinear[] = SCREEN_POINT R"(float b = tan(a / 2.0);
vec3 screenPt = vec3(b * s, -1.0);
)";

// The inverse of a stereographic mapping from a point b behind the sphere's centre.
const char littlePlanet[] = SCREEN_POINT R"(float b = .25;
vec2 c = a * s;
float d = dot(c,c);
float bb = (b + 1.0) * (b + 1.0);
float f = 2.0 * (b + 1.0) / (d + bb);
vec3 screenPt = vec3(f * c, (d - bb) / (d + bb));
)";

// In the exact centre the radius is 0, and sin(0)/0 is not a number.
const char fisheye[] = SCREEN_POINT R"(float o_r = length(s);
if (o_r * a > twopi) return vec2(-1.);
float agl = o_r * a / 2.0;
vec3 screenPt = vec3(s * sin(agl) / max(o_r, 0.0000001), -cos(agl));
)";

// Where the ray from the eye at (0,0,zs) through (c,-1) meets the unit sphere.
const char orvex[] = SCREEN_POINT R"(vec2 c = uProjScale * s;
float zs = uProjectionDistance;
float xy2 = dot(c,c);
float zs12 = (zs + 1.0) * (zs + 1.0);
float delta = 4.0 * (zs * zs * xy2 * xy2 - (xy2 + zs12) * (xy2 * zs * zs - zs12));
float z = (2.0 * zs * xy2 - sqrt(max(delta, 0.0))) / (2.0 * (zs12 + xy2));
vec3 screenPt = vec3(c.x * (zs - z) / (zs + 1.0), c.y * (zs - z) / (zs + 1.0), z);
)";

const char scaleCorrector[] = "screenPt.y *= uScaleCorrector;\n";

const char toWorld[] = "vec3 pt = (getMatViewInverse() * vec4(screenPt, 1.0)).xyz;\n";

const char equirectangular[] = "vec2 uv = toEquiTexCoords(toSpherical(pt).yz);\n";

// The lower bounds keep an empty extent finite; it then shows nothing.
const char yawPitchLimits[] =
    R"(float f_x = 1.0 / (max(abs(uYawMin - uYawMax), 0.000001) / twopi);
float g_x = f_x * (abs(-pi - uYawMin) / twopi);
uv.x = uv.x * f_x - g_x;
float f_y = 1.0 / (max(abs(uPitchMin - uPitchMax), 0.000001) / pi);
float g_y = f_y * (abs(halfpi - uPitchMax) / pi);
uv.y = uv.y * f_y - g_y;
)";

const char quarterTurn[] = "float ty = pt.y;pt.y = -pt.x;pt.x = ty;\n";

// A lens of 1.33 times pi (239.4 degrees) fills the picture.
const char fisheyeCircle[] = R"(float i_r = atan(sqrt(pt.x * pt.x + pt.z * pt.z), pt.y) / (pi*1.33);
float theta = atan(pt.x, pt.z);
vec2 uv = vec2(i_r * cos(theta) + 0.5, i_r * sin(theta) + 0.5);
)";

// An atlas of 3 by 2 faces: right, left, up above down, front, back. The faces are shrunk a
// little so that filtering does not reach across their seams.
const char cubemap[] = R"(vec3 ab = abs(pt);
float normInf = max(ab.x, max(ab.y, ab.z));
vec3 face = vec3(0.0);
if (ab.x == normInf) face.x = sign(pt.x);
else if (ab.y == normInf) face.y = sign(pt.y);
else if (ab.z == normInf) face.z = sign(pt.z);
float expandFactor = 1.0 / 1.01;
float tinyOffset = 0.005;
vec3 e = expandFactor * ((pt / normInf + 1.0) / 2.0) + tinyOffset;
vec2 uv = vec2(-1.0);
if (face.x > 0.0) uv = vec2(e.z / 3.0, (1.0 - e.y) / 2.0);
else if (face.x < 0.0) uv = vec2((1.0 - e.z) / 3.0 + 1.0 / 3.0, (1.0 - e.y) / 2.0);
else if (face.z > 0.0) uv = vec2((1.0 - e.x) / 3.0 + 2.0 / 3.0, (1.0 - e.y) / 2.0 + 0.5);
else if (face.z < 0.0) uv = vec2(e.x / 3.0 + 1.0 / 3.0, (1.0 - e.y) / 2.0 + 0.5);
else if (face.y > 0.0) uv = vec2(e.x / 3.0 + 2.0 / 3.0, (1.0 - e.z) / 2.0);
else if (face.y < 0.0) uv = vec2(e.x / 3.0, e.z / 2.0 + 0.5);
)";

const char flatPanning[] = SCREEN_POINT R"(float scale = a / 2.0;
vec2 tp = s * scale + vec2(pi + uCameraYaw, halfpi - uCameraPitch);
tp.x += twopi*(1.0-step(0.0,tp.x));
tp.x -= twopi*step(twopi,tp.x);
vec2 uv = toEquiTexCoords(tp);
uv.y = 1.0 - uv.y;
uv.x = mod(uv.x, 1.0);
)";

#undef SCREEN_POINT

const char mainStart[] = "void main(){vec2 pixel = fragCoord() / uViewportSize;vec2 a;"
                         "float qb=.017453293*uFov;highp vec3 color,frag;a=p(qb,fragCoord());\n";

// 0.07919222 is 1 / (2 tan(81 degrees)): the panel's plane ends there.
const char planarPanel[] = R"(float theta = (2.0 * a.x - 1.0) * pi;
float phi = halfpi - pi * (1.0 - a.y);
if (theta > -halfpi && theta < halfpi) {
a.x = tan(theta) * 0.07919222 + 0.5;
a.y = 0.5 - 0.07919222 * tan(phi) / cos(theta);
}
a.x = a.x * 2.0 - 0.5;
a.y = a.y * 4.0 - 1.5;
)";

const char discardOutside[] = "if (a.x < 0.0 || a.x > 1.0 || a.y < 0.0 || a.y > 1.0) discard;\n";

const char sampleOverlay[] = "color = texture2D(uSampler,a).rgb;\n"
                             "float alpha = texture2D(uSampler,a).a;\n";

const char overUnder[] = "a.y = a.y / 2.0 + 0.5 * float(uEye);\n";
const char sideBySide[] = "a.x = a.x / 2.0 + 0.5 * float(uEye);\n";
const char overUnderInverted[] = "a.y = a.y / 2.0 + 0.5 * (1.0 - float(uEye));\n";
const char sideBySideInverted[] = "a.x = a.x / 2.0 + 0.5 * (1.0 - float(uEye));\n";

const char colorControls[] =
    R"(color *= (step(0.0, a.x) * step(0.0, 1.0 - a.x));color *= (step(0.0, a.y) * step(0.0, 1.0 - a.y));
frag = vec4(uColorMatrix * vec4(color,1.0)).xyz;
float maverage = (frag.r + frag.g + frag.b) / 3.0;
float mx = max(frag.r, max(frag.g, frag.b));
float amt = (mx - maverage) * (-uVibrance * 3.0);
frag = mix(frag, vec3(mx), amt);
float wangle = uHue * pi;
float ws = sin(wangle), wc = cos(wangle);
vec3 wweights = (vec3(2.0 * wc, -sqrt(3.0) * ws - wc, sqrt(3.0) * ws - wc) + 1.0) / 3.0;
float wlen = length(frag);
frag = vec3(dot(frag, wweights.xyz), dot(frag, wweights.zxy), dot(frag, wweights.yzx));
float waverage = (frag.r + frag.g + frag.b) / 3.0;
float satPositive = step(0.0, uSaturation);
float mulSat = satPositive * (1.0 - 1.0 / (1.001 - uSaturation)) + (1.0 - satPositive) * (-uSaturation);
frag += (vec3(waverage) - frag) * mulSat;
frag += uBrightness;frag = (frag - 0.5) / (1.0 - uContrast) + 0.5;
)";

#define LUMA "float yy = 0.3 * frag.r + 0.59 * frag.g + 0.11 * frag.b;\n"

const char sepia[] = LUMA "frag = vec3(yy + 0.15, yy + 0.07, yy - 0.12);\n";

const char blackAndWhite[] = LUMA "frag = vec3(step(0.5, yy));\n";

#undef LUMA

const char tv[] = R"(vec3 fxtmp = clamp(1.4 * frag * frag, 0.0, 1.0);
float sweepDensity = uViewportSize.y * 1.50;
float sweepRate = 60.0;
float vv = 0.5 + ((fragCoord() / uViewportSize).y - 0.5) * (0.9 + 0.1 * sin(0.2 * uTime));
fxtmp *= 0.92 + 0.08 * sin(sweepRate * uTime + sweepDensity * vv);
fxtmp *= 1.3 + 0.04 * (0.9 * cos(10.0 * uTime) + cos(40.0 * uTime));
frag = clamp(fxtmp * vec3(0.95, 1.05, 0.95), 0.0, 1.0);
)";

const char invert[] = "frag = 1.0 - frag;\n";

// One colour stays, the rest turns gray: thr is 1 where the colour kept is strong and the others
// are weak.
const char redOnly[] = R"(vec3 fxtmp = frag;
fxtmp.r = clamp(1.5 * fxtmp.r, 0.0, 1.0);
float fxavg = (fxtmp.r + fxtmp.g + fxtmp.b) / 3.0;
float thr = smoothstep(0.2, 0.8, fxtmp.r) * (1.0 - step(0.1, fxtmp.g)) * (1.0 - step(0.1, fxtmp.b));
float gb = fxavg * (1.0 - thr);
frag = vec3(max(fxavg, thr), gb, gb);
)";

const char yellowOnly[] = R"(vec3 fxtmp = frag;
fxtmp.rg = clamp(1.5 * fxtmp.rg, 0.0, 1.0);
float fxavg = (fxtmp.r + fxtmp.g + fxtmp.b) / 3.0;
float thr = smoothstep(0.2, 0.8, fxtmp.r) * smoothstep(0.2, 0.8, fxtmp.g) * (1.0 - step(0.1, fxtmp.b));
float gb = fxavg * (1.0 - thr);
frag = vec3(max(fxavg, thr), max(fxavg, thr), gb);
)";

const char blueOnly[] = R"(vec3 fxtmp = frag;
fxtmp.b = clamp(1.5 * fxtmp.b, 0.0, 1.0);
float fxavg = (fxtmp.r + fxtmp.g + fxtmp.b) / 3.0;
float thr = smoothstep(0.2, 0.8, fxtmp.b) * (1.0 - step(0.1, fxtmp.r)) * (1.0 - step(0.1, fxtmp.g));
float gb = fxavg * (1.0 - thr);
frag = vec3(gb, gb, max(fxavg, thr));
)";

const char mainEnd[] =
    "vec3 vigtmp = frag * falloff(0.8, uVignettingRadius * 0.799, distance(pixel, vec2(0.5, 0.5))"
    " * (uVignettingAmount + uVignettingRadius));\n"
    "gl_FragColor = vec4(vigtmp, alpha);\n}\n";

const char blitStart[] = R"(varying highp vec4 texCoord;
uniform sampler2D src;
void main(){
highp vec4 color = texture2D(src,vec2(texCoord.x,texCoord.y));
)";

} // namespace shader::pieces
