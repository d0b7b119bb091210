#!/usr/bin/env python3
"""Mutation check: does the test suite catch the faults a real change could make?

Copies the tree into a scratch folder, builds it once, then applies one mutant at a time
(a wrong constant, a flipped sign, a swapped call, a skipped statement, a dropped guard, a
shader's arithmetic changed), rebuilds incrementally and runs the plain ctest. A mutant is
killed when the build still works and some test fails. The scratch folder is kept between
runs, so a second run rebuilds only what changed.

    scripts/mutate.py                 # every mutant against the working tree
    scripts/mutate.py --rev HEAD~3    # against a commit
    scripts/mutate.py --only 4,17     # some of them
    scripts/mutate.py --list          # the table, and whether each still applies
"""

import argparse
import os
import subprocess
import sys
import time
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parent.parent


class Mutant(NamedTuple):
    path: str  # relative to the repository root
    old: str  # occurs exactly once in the file
    new: str
    fault: str


MUTANTS = [
    # Common/Native
    Mutant("Common/Native/HostInput.cpp",
     "(height - static_cast<float>(y)) / height",
     "static_cast<float>(y) / height",
     "touch y not flipped to the bottom-left origin"),
    Mutant("Common/Native/HostAssets.cpp",
     "forgetSharedTexture(entry);",
     "",
     "a removed shared texture left in the other instances' lists and bg caches"),
    Mutant("Common/Native/HostFrame.cpp",
     "    effect->mEvents.clear();  // keeps its storage: no allocation per frame\n",
     "",
     "queued events not cleared after delivery: every frame delivers them again"),
    Mutant("Common/Native/PixelConversion.h",
     "const __m128i red = _mm_and_si128(_mm_srli_epi32(v, 16), lowByte);",
     "const __m128i red = _mm_and_si128(_mm_srli_epi32(v, 8), lowByte);",
     "SSE2 ARGB->RGBA: red taken from the green byte (shift by 8 instead of 16)"),
    Mutant("Common/Native/PixelConversion.h",
     "((v & 0xFFu) << 16) | alpha;",
     "((v & 0xFFu) << 8) | alpha;",
     "scalar tail of the ARGB->RGBA swap moves blue into green (shift by 8 instead of 16)"),
    Mutant("Common/Native/HostAssets.cpp",
     "strcmp(name, \"bg\") == 0",
     "strcmp(name, \"bg\") != 0",
     "alpha forced opaque on every texture except the background instead of on the background"),
    Mutant("Common/Native/InstanceEntry.cpp",
     "        attribute->mLocation = location;\n",
     "",
     "rebuild after a lost context keeps the old program's attribute locations"),
    Mutant("Kinetra/Core/Implementation/MatrixLanes.h",
     "            product[4 * i + j] = a[4 * i] * b[j]",
     "            r[4 * i + j] = product[4 * i + j] = a[4 * i] * b[j]",
     "scalar matrix product written into its result while it reads it: an aliased product goes wrong"),
    Mutant("Common/Native/HostLifecycle.cpp",
     "    gParameters.clear();\n",
     "",
     "destroy keeps the stored parameters: they are replayed into the next effect's init"),

    # Common/Effect
    Mutant("Common/Effect/IAnimation.h",
     "    virtual void update(float now) = 0;",
     "    virtual float getDuration() const { return 0.0f; }\n    virtual void update(float now) = 0;",
     "a fourth leading animation slot: the manager's calls miss an effect's own animation class"),
    Mutant("Common/Effect/Effect.cpp",
     "projection[0][0] = 2.0f / width;",
     "projection[0][0] = 1.0f / width;",
     "orthographic projection x scale halved (1/width instead of 2/width)"),
    Mutant("Common/Effect/Effect.cpp",
     "glm::vec2(1.0f, float(height) / float(width))",
     "glm::vec2(1.0f, float(width) / float(height))",
     "portrait scale factor inverted (width/height instead of height/width)"),
    Mutant("Common/Effect/Effect.cpp",
     "            } else if (*track.pressed) {",
     "            } else {",
     "pressed-guard dropped: a move without a pointer down still moves the pointer's position"),
    Mutant("Common/Effect/Effect.cpp",
     "*track.start = *track.current = position;",
     "*track.current = position;",
     "touch down/up no longer records the pointer's start position"),
    Mutant("Common/Effect/Timer.cpp",
     "mStartingCnt.tv_sec = current.tv_sec - static_cast<int>(paused);",
     "mStartingCnt.tv_sec = current.tv_sec + static_cast<int>(paused);",
     "resume shifts the clock origin the wrong way: elapsed time jumps backwards after a pause"),

    # Common/Renderer/Base
    Mutant("Common/Renderer/Base/Texture.cpp",
     "mIsMirrored ? GL_MIRRORED_REPEAT : GL_REPEAT",
     "mIsMirrored ? GL_MIRRORED_REPEAT : GL_CLAMP_TO_EDGE",
     "repeating texture gets GL_CLAMP_TO_EDGE instead of GL_REPEAT"),
    Mutant("Common/Renderer/Base/Texture.cpp",
     "mIsMirrored ? GL_MIRRORED_REPEAT : GL_REPEAT",
     "mIsMirrored ? GL_REPEAT : GL_MIRRORED_REPEAT",
     "mirrored and plain repeat swapped"),
    Mutant("Common/Renderer/Base/Texture.cpp",
     "!mIsRepeat ? GL_CLAMP_TO_EDGE : mIsMirrored",
     "!mIsRepeat ? GL_REPEAT : mIsMirrored",
     "a clamped texture repeats"),
    Mutant("Common/Renderer/Base/Texture.cpp",
     "    glPixelStorei(GL_PACK_ALIGNMENT, 1);\n    if (mIsCompressed) {",
     "    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);\n    if (mIsCompressed) {",
     "upload sets the unpack alignment instead of the pack one: padded RGB rows read tight"),
    Mutant("Common/Renderer/Base/TextureCube.cpp",
     "glPixelStorei(GL_PACK_ALIGNMENT, 1);",
     "glPixelStorei(GL_UNPACK_ALIGNMENT, 1);",
     "cube upload sets the unpack alignment instead of the pack one"),
    Mutant("Common/Renderer/Base/RenderableTexture.cpp",
     "    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);\n    glReadPixels(",
     "    glPixelStorei(GL_PACK_ALIGNMENT, 1);\n    glReadPixels(",
     "read-back sets the pack alignment instead of the unpack one: later RGB uploads read padded rows"),
    Mutant("Common/Renderer/Base/RenderableTexture.cpp",
     "    glBindTexture(GL_TEXTURE_2D, mTexture);\n    glPixelStorei(GL_PACK_ALIGNMENT, 1);\n    glTexSubImage2D(",
     "    glBindTexture(GL_TEXTURE_2D, mTexture);\n    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);\n    glTexSubImage2D(",
     "writeBuffer sets the unpack alignment instead of the pack one"),
    Mutant("Common/Renderer/Base/RenderableTexture.cpp",
     "    glPixelStorei(GL_PACK_ALIGNMENT, 1);\n    if (mIsSubImageUse && mIsUploaded) {",
     "    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);\n    if (mIsSubImageUse && mIsUploaded) {",
     "render target storage sets the unpack alignment instead of the pack one"),
    Mutant("Common/Renderer/Base/RenderableTexture.cpp",
     "    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, mTexture, 0);\n",
     "",
     "render target's texture not attached: drawing lands in the renderbuffer"),
    Mutant("Common/Renderer/Base/RenderableTexture.cpp",
     "    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,\n"
     "                              mColorRenderBuffer);\n",
     "",
     "render target's colour renderbuffer never attached"),
    Mutant("Common/Renderer/Base/Renderer.cpp",
     "    attribute->mLocation = glGetAttribLocation(mProgram->mProgram, name.c_str());\n    if (attribute->mLocation == -1) {",
     "    attribute->mLocation = glGetAttribLocation(mProgram->mProgram, name.c_str());\n    if (attribute->mLocation == -1 || data == nullptr) {",
     "an attribute without data yet is dropped: coordinates filled later never show"),
    Mutant("Common/Renderer/Base/Renderer.cpp",
     'addUniform("uViewMatrix", &(*Drawable::mViewMatrix)[0][0]',
     'addUniform("uViewMatrix", &(*Drawable::mProjectionMatrix)[0][0]',
     "the view matrix uniform fed the projection matrix"),
    Mutant("Common/Renderer/Base/Texture.cpp",
     "void Texture::bind(unsigned location, unsigned unit) {\n    glActiveTexture(GL_TEXTURE0 + unit);",
     "void Texture::bind(unsigned location, unsigned unit) {\n    glActiveTexture(GL_TEXTURE0);",
     "texture bound on unit 0 whatever its sampler's unit"),
    Mutant("Common/Renderer/Base/Renderer.cpp",
     "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);",
     "glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);",
     "blending treats colours as premultiplied (GL_ONE instead of GL_SRC_ALPHA)"),
    Mutant("Common/Renderer/Base/Renderer.cpp",
     "        if (!attribute->mIsStatic) {\n"
     "            glBufferData(GL_ARRAY_BUFFER, attributeBytes(*attribute), attribute->mData,\n"
     "                         GL_STREAM_DRAW);\n"
     "        }\n",
     "",
     "dynamic vertex arrays not uploaded again before each draw"),
    Mutant("Common/Renderer/Base/Background.cpp",
     "if (rx < ry) {",
     "if (rx > ry) {",
     "background crop applied on the wrong axis"),
    Mutant("Common/Renderer/Base/Implementation/DrawableMatrices.cpp",
     "result[column][row] = column == 3 ? sum + view[3][row] : sum;",
     "result[column][row] = sum;",
     "model-view product drops the view's translation"),
    Mutant("Common/Renderer/Base/RenderableTexture.cpp",
     "    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);\n"
     "    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);\n"
     "    for (Renderer* renderer : *mRenderers) {",
     "    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);\n"
     "    for (Renderer* renderer : *mRenderers) {",
     "render target not cleared before its renderers draw: the previous frame shows through"),
    Mutant("Common/Renderer/Base/LightRenderer.frag",
     "color.a * uOpacity",
     "color.a",
     "lit shader ignores the drawable's opacity"),
    Mutant("Common/Renderer/Base/BackgroundRenderer.vert",
     "vTextureCoord = aTextureCoords;",
     "vTextureCoord = vec2(aTextureCoords.x, 1.0 - aTextureCoords.y);",
     "background texture coordinates flipped vertically: background drawn upside down"),

    # Common/Tools
    Mutant("Common/Tools/Curves.cpp",
     "const float t = float(x - start) / float(end - start - 1);",
     "const float t = float(x - start) * (1.0f / float(end - start - 1));",
     "curve t from a reciprocal: a segment's last entry can fall one level short"),
    Mutant("Common/Tools/Curves.cpp",
     "int(to.x + 1.0f)",
     "int(to.x)",
     "curve segment end off by one: the last level of each segment is left unfilled"),
    Mutant("Common/Tools/File.cpp",
     "mBuffer.insert(mBuffer.end(), bytes, bytes + size);",
     "mBuffer.assign(bytes, bytes + size);",
     "write replaces the buffer instead of appending to it"),
    Mutant("Common/Tools/File.cpp",
     "if (fseek(file, 0, SEEK_SET) != 0) {",
     "if (fseek(file, 0, SEEK_CUR) != 0) {",
     "file not rewound after measuring its length: the read gets no bytes"),
    Mutant("Common/Tools/Profiler.cpp",
     "if (elapsed < record.min) {",
     "if (elapsed > record.min) {",
     "profiler minimum compared the wrong way: it never records a time"),

    # Common/Platform
    Mutant("Common/Platform/HostAssetDirectory.cpp",
     "manager->directory + \"/\" + fileName",
     "manager->directory + fileName",
     "asset path built without the directory separator: assets are not found"),
    Mutant("Common/Platform/HostAssetDirectory.cpp",
     "    fseeko(file, 0, SEEK_SET);\n",
     "",
     "asset stream left at its end after measuring: reading an asset gets no bytes"),
    Mutant("Common/Platform/HeadlessContext.cpp",
     "return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];",
     "return uint32_t(p[2]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[0]) << 8 | p[3];",
     "readPixel packs blue where red belongs (red and blue swapped)"),
    Mutant("Common/Platform/HeadlessContext.cpp",
     "        eglDestroySurface(mDisplay, old);\n    }\n    glViewport(0, 0, width, height);\n",
     "        eglDestroySurface(mDisplay, old);\n    }\n",
     "resize keeps the old viewport instead of covering the new surface"),

    # Kinetra/Core
    Mutant("Kinetra/Core/KNISceneComponent.cpp",
     "if (filter != Filter::kAll && child->mVisibility != 1) {",
     "if (filter == Filter::kVisibleNotFrozen && child->mVisibility != 1) {",
     "hidden child layers still drawn and sent events (visibility checked only for updates)"),
    Mutant("Kinetra/Core/KNISceneComponent.cpp",
     "touchEvent(c, a, b, xs, ys);",
     "touchEvent(a, b, c, xs, ys);",
     "touch event hook gets its arguments in the wrong order"),
    Mutant("Kinetra/Core/KNMVPManager.cpp",
     "r[0][1] = t * x * y - z * s;",
     "r[0][1] = t * x * y + z * s;",
     "rotation matrix term with the wrong sign"),
    Mutant("Kinetra/Core/KNMVPManager.cpp",
     "multiplyMatrix(mMV, mModel, mView);",
     "multiplyMatrix(mMV, mView, mModel);",
     "model-view product taken in the wrong order"),
    Mutant("Kinetra/Core/KNIRenderer.cpp",
     "    glUniform1i(mShader->getUniformLoc(name), static_cast<GLint>(mTextureUnit));\n"
     "    ++mTextureUnit;\n",
     "    glUniform1i(mShader->getUniformLoc(name), static_cast<GLint>(mTextureUnit));\n",
     "texture unit not advanced: every sampler of a draw reads unit 0"),
    Mutant("Kinetra/Core/KNIRenderer.cpp",
     "entry->vertices = std::min(entry->vertices, vertices);",
     "entry->vertices = std::max(entry->vertices, vertices);",
     "vertex bound check uses the longest bound array: draws reading past a short array run"),
    Mutant("Kinetra/Core/KNShaderManager.cpp",
     "mUniforms.push_back({id, glGetUniformLocation(mProgram, name)});",
     "mUniforms.push_back({id, glGetAttribLocation(mProgram, name)});",
     "uniform registered with an attribute lookup (glGetAttribLocation instead of glGetUniformLocation)"),
    Mutant("Kinetra/Core/KNFBO.cpp",
     "    clearFBOSurface();\n    glBindFramebuffer(GL_FRAMEBUFFER, 0);\n}",
     "    glBindFramebuffer(GL_FRAMEBUFFER, 0);\n}",
     "new frame-buffer surface not cleared to its clear colour"),
    Mutant("Kinetra/Core/KNGrid2D.cpp",
     "const int n = i + j * w;",
     "const int n = i * w + j;",
     "cell's first node indexed with row and column swapped"),
    Mutant("Kinetra/Core/KNInterpolator.cpp",
     "2.0f * (p1 - p0) * (1.0f - u)",
     "2.0f * (p1 - p0) * (1.0f + u)",
     "quadratic interpolator weight with the wrong sign (1 + u instead of 1 - u)"),
    Mutant("Kinetra/Core/KNDrawBGTilt.frag",
     "mix(nextColor, currColor, uAlphaScale)",
     "mix(currColor, nextColor, uAlphaScale)",
     "tilt cross-fade mixes the two textures the wrong way round"),
    Mutant("Kinetra/Core/KNDrawBackground.frag",
     "gl_FragColor = texture2D(uTexMap, vTexUV) * uColor;",
     "gl_FragColor = texture2D(uTexMap, vTexUV);",
     "background shader ignores its colour"),

    # Kinetra/Layers
    Mutant("Kinetra/Layers/KNDrawAdvectColorBrush.cpp",
     "qam::setBrushValue(*mShader, kInvScreenY, 1.0f / static_cast<float>(mSurfaceHeight));",
     "qam::setBrushValue(*mShader, kInvScreenY, 1.0f / static_cast<float>(mSurfaceWidth));",
     "inverse screen height computed from the width"),
    Mutant("Kinetra/Layers/Implementation/BrushPass.cpp",
     "                      unsigned int texture) {\n    glActiveTexture(GL_TEXTURE0 + unit);",
     "                      unsigned int texture) {\n    glActiveTexture(GL_TEXTURE0);",
     "brush textures all bound on unit 0 while their samplers name other units"),
    Mutant("Kinetra/Layers/KNDrawBrilliantRing.cpp",
     "constexpr float kTabScale = 0.95f;",
     "constexpr float kTabScale = 0.9f;",
     "ring background zoom constant wrong (0.9 instead of 0.95)"),
    Mutant("Kinetra/Layers/KNDrawMixWaterBrush.cpp",
     "    glDisable(GL_BLEND);\n",
     "    glEnable(GL_BLEND);\n",
     "mix water brush draws with blending on instead of off"),
    Mutant("Kinetra/Layers/Implementation/WaterPass.cpp",
     "normalizeTextureCoord(background.uv, width,\n"
     "                                                                           height);",
     "normalizeTextureCoord(background.uv, height,\n"
     "                                                                           width);",
     "water background crop computed for the surface's width and height swapped"),
    Mutant("Kinetra/Layers/KNDrawBrilliantRadial.cpp",
     "1.0f - mMesh.vertex[i].y * mInvSurfaceHeight",
     "mMesh.vertex[i].y * mInvSurfaceHeight",
     "screen coordinates not flipped: v = 0 at the bottom instead of the top"),
    Mutant("Kinetra/Layers/KNDrawRadialColorBrush.cpp",
     "setShaderUniformValue(\"uCenterY\", mCentre[1]);",
     "setShaderUniformValue(\"uCenterY\", mCentre[0]);",
     "radial centre's y uniform gets the x coordinate"),
    Mutant("Kinetra/Layers/Implementation/BrushQuad.cpp",
     "position[1] - 0.5f * height",
     "position[1] + 0.5f * height",
     "centred brush quad offset upwards instead of downwards"),
    Mutant("Kinetra/Layers/KNDrawAdvectColorBrush.vert",
     "vTexUV = vec2(aTexUV.x, 1.0 - aTexUV.y);",
     "vTexUV = vec2(aTexUV.x, aTexUV.y);",
     "advect brush texture coordinates not flipped: frame-buffer textures read upside down"),
    Mutant("Kinetra/Layers/KNDrawAdvectColorBrush.frag",
     "texColor = mix(originalColor, backgroundColor, 0.6);",
     "texColor = mix(originalColor, backgroundColor, 0.4);",
     "outside the brush, the background weighs 0.4 instead of 0.6"),
    Mutant("Kinetra/Layers/KNDrawBGAdvectWaterBrush.frag",
     "texture2D(uOriginal, vTexUVBG), 0.03);",
     "texture2D(uOriginal, vTexUVBG), 0.3);",
     "water advection pulls back to the background ten times too fast (0.3 instead of 0.03)"),
    Mutant("Kinetra/Layers/KNDrawBrilliantRadial.frag",
     "N.y *= 0.5625;",
     "N.x *= 0.5625;",
     "16:9 screen-shape correction applied to x instead of y"),
    Mutant("Kinetra/Layers/KNDrawBrilliantRing.frag",
     "hsv.x -= 0.027;",
     "hsv.x += 0.027;",
     "ring hue shifted the wrong way"),
    Mutant("Kinetra/Layers/KNDrawMixWaterBrush.frag",
     "gl_FragColor = mix(texColor, densityColor, a);",
     "gl_FragColor = mix(densityColor, texColor, a);",
     "water mix operands swapped: alpha selects the background instead of the density"),
    # The author's kit: the preview tool and the samples' clock steps
    Mutant("examples/preview/GoldenFrames.cpp",
     "differing += off > mTolerance.channel;",
     "differing += off >= mTolerance.channel;",
     "golden frames: a pixel exactly at the channel tolerance counted as differing"),
    Mutant("examples/preview/GlCounting.cpp",
     "if (gCounting && bound(GL_CURRENT_PROGRAM) != GLint(program)) {",
     "if (gCounting) {",
     "frame costs: every glUseProgram counted as a program switch"),
    Mutant("examples/preview/PreviewRun.cpp",
     "setEffectClock((frame + 1) / mOptions.rate);",
     "setEffectClock(frame / mOptions.rate);",
     "fixed clock: frame N drawn a frame early (at N / HZ)"),
    Mutant("examples/preview/PreviewRun.cpp",
     "if (copy.empty() || !Session::isEffectLibrary(copy, error)) {",
     "if (copy.empty()) {",
     "reload: a library that can't be loaded replaces the running effect"),
    Mutant("examples/effects/common/ClockSteps.cpp",
     "constexpr double kSlack = 0.01;",
     "constexpr double kSlack = 0.0;",
     "clock steps: a 60th read a hair short skips its step and doubles the next"),
    Mutant("examples/effects/common/ClockSteps.cpp",
     "std::max(mLast + 1, reached - kMostAFrame + 1)",
     "mLast + 1",
     "clock steps: a jump of the clock runs every missed step in one frame"),
]


def run(command, cwd, log, timeout=None):
    with open(log, "ab") as out:
        out.write(("\n$ " + " ".join(map(str, command)) + "\n").encode())
        out.flush()
        try:
            return subprocess.run(command, cwd=cwd, stdout=out, stderr=subprocess.STDOUT,
                                  timeout=timeout).returncode
        except subprocess.TimeoutExpired:
            out.write(b"\n(timed out)\n")
            return -1


def tree_files(rev):
    """The files of `rev`, or of the working tree (tracked and not ignored) when None."""
    if rev is None:
        listing = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                  "--exclude-standard"], cwd=ROOT, check=True,
                                 capture_output=True).stdout
        for name in filter(None, listing.decode().split("\0")):
            path = ROOT / name
            if path.is_file():
                yield name, path.read_bytes()
        return
    listing = subprocess.run(["git", "ls-tree", "-r", "-z", "--name-only", rev], cwd=ROOT,
                             check=True, capture_output=True).stdout
    for name in filter(None, listing.decode().split("\0")):
        yield name, subprocess.run(["git", "show", f"{rev}:{name}"], cwd=ROOT, check=True,
                                   capture_output=True).stdout


def sync(source, rev):
    """Makes `source` hold exactly the tree, touching only the files that differ, so the
    incremental build stays incremental."""
    wanted = {}
    for name, data in tree_files(rev):
        wanted[name] = data
        target = source / name
        if not target.is_file() or target.read_bytes() != data:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(data)
    for path in sorted(source.rglob("*"), reverse=True):
        name = path.relative_to(source).as_posix()
        if path.is_file() and name not in wanted:
            path.unlink()
        elif path.is_dir() and not any(path.iterdir()):
            path.rmdir()


def check_table():
    """Every mutant's text occurs exactly once in its file; returns the ones that do not."""
    broken = []
    for number, mutant in enumerate(MUTANTS, 1):
        path = ROOT / mutant.path
        found = path.read_text().count(mutant.old) if path.is_file() else 0
        if found != 1:
            broken.append((number, mutant, found))
    return broken


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rev", help="test this commit instead of the working tree")
    parser.add_argument("--scratch", type=Path, default=ROOT / "build-mutate",
                        help="scratch folder, kept between runs (default: build-mutate/)")
    parser.add_argument("--only", help="comma-separated mutant numbers, from 1")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 2)
    parser.add_argument("--list", action="store_true", help="print the table and stop")
    args = parser.parse_args()

    if args.list:
        broken = {number for number, _, _ in check_table()}
        for number, mutant in enumerate(MUTANTS, 1):
            mark = "  (does not apply)" if number in broken else ""
            print(f"{number:3} {mutant.path}: {mutant.fault}{mark}")
        return 0

    chosen = range(1, len(MUTANTS) + 1)
    if args.only:
        chosen = [int(n) for n in args.only.split(",")]

    source, build = args.scratch / "src", args.scratch / "build"
    log = args.scratch / "mutate.log"
    source.mkdir(parents=True, exist_ok=True)
    log.write_text("")
    sync(source, args.rev)

    def build_and_test():
        if run(["cmake", "--build", build, "-j", str(args.jobs)], source, log, 1800) != 0:
            return "not built"
        status = run(["ctest", "--stop-on-failure", "-j", str(args.jobs), "--timeout", "300"],
                     build, log, 3600)
        return "survived" if status == 0 else "killed"

    configure = ["cmake", "-S", source, "-B", build, "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
                 "-DTALVEQAM_BENCHMARKS=OFF"]
    if run(configure, source, log) != 0 or build_and_test() != "survived":
        print(f"mutate: the unmutated tree does not build and pass; see {log}", file=sys.stderr)
        return 2

    results = []
    for number in chosen:
        mutant = MUTANTS[number - 1]
        path = source / mutant.path
        original = path.read_text()
        if original.count(mutant.old) != 1:
            print(f"{number:3} does not apply: {mutant.path}: {mutant.fault}")
            results.append((number, "does not apply"))
            continue
        started = time.monotonic()
        with open(log, "a") as out:
            out.write(f"\n=== mutant {number}: {mutant.path}: {mutant.fault}\n")
        path.write_text(original.replace(mutant.old, mutant.new))
        try:
            outcome = build_and_test()
        finally:
            path.write_text(original)
        seconds = time.monotonic() - started
        print(f"{number:3} {outcome:9} {seconds:5.0f} s  {mutant.path}: {mutant.fault}", flush=True)
        results.append((number, outcome))

    build_and_test()  # leaves the scratch build unmutated for the next run
    killed = [n for n, outcome in results if outcome == "killed"]
    others = [f"{n} {outcome}" for n, outcome in results if outcome != "killed"]
    print(f"mutate: {len(killed)} killed of {len(results)}"
          + (f"; not killed: {', '.join(others)}" if others else ""))
    return 0 if not others else 1


if __name__ == "__main__":
    sys.exit(main())
