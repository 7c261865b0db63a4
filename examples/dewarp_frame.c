// Dewarps one frame from C, through the slot functions alone.
//
//     dewarp_frame_c [OUTPUT [INPUT WIDTH HEIGHT]]
//
// INPUT is one raw NV12 frame with a centred fisheye circle; without it a frame is made up. OUTPUT
// becomes the view, a raw NV12 frame of 800 x 600 pixels. The library prints on standard output, so
// this program talks on standard error.
#include <LumoFESDK.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { SLOT = 0, SCREEN_W = 800, SCREEN_H = 600 };

static size_t frame_bytes(int w, int h)
{
    return (size_t)w * (size_t)h * 3 / 2;
}

static bool succeeded(const char* call, int status)
{
    if (status == FE_STATUS_OK) return true;
    fprintf(stderr, "%s failed with status %d; LumoFESDK.h explains it\n", call, status);
    return false;
}

static bool read_frame(const char* path, unsigned char* frame, int w, int h)
{
    const size_t wanted = frame_bytes(w, h);
    FILE* file = fopen(path, "rb");
    bool whole;
    if (!file) {
        perror(path);
        return false;
    }
    whole = fread(frame, 1, wanted, file) == wanted && fgetc(file) == EOF;
    fclose(file);
    if (!whole)
        fprintf(stderr, "%s: give one NV12 frame of %d x %d pixels, %lu bytes\n", path, w, h,
                (unsigned long)wanted);
    return whole;
}

static bool write_frame(const char* path, const unsigned char* frame, size_t bytes)
{
    FILE* file = fopen(path, "wb");
    bool written = file && fwrite(frame, 1, bytes, file) == bytes;
    if (file && fclose(file) != 0) written = false;
    if (!written) perror(path);
    return written;
}

// The single view of a ceiling camera, tilted outwards. IFishEye, which aims absolutely, needs C++;
// C steers by steps. A step is repeated on every frame until the next update: here for one frame.
static bool dewarp(unsigned char* in, int w, int h, unsigned char* out)
{
    FE_EventParams step = {0, -40, 0}; // pan, tilt, zoom
    FE_ViewParams view = {0};
    bool done;
    view.nViewMode = 8;
    view.nCenterX = (unsigned short)(h / 2); // the centre's row
    view.nCenterY = (unsigned short)(w / 2); // the centre's column
    view.nRadius = view.nRadius2 = (unsigned short)((w < h ? w : h) / 2);

    done = succeeded("Initialize", Initialize(SLOT, w, h, SCREEN_W, SCREEN_H, FORMAT_NV12)) &&
           succeeded("ParamsUpdated", ParamsUpdated(SLOT, &step, &view)) &&
           succeeded("VideoInput", VideoInput(SLOT, in, out, w, h, FORMAT_NV12, false));
    return succeeded("Close", Close(SLOT)) && done;
}

// Dewarps a frame that is bright above its centre: a tilted view looks there, an untilted one not.
static bool dewarp_made_up(unsigned char* in, int w, int h, unsigned char* out)
{
    const size_t luma = (size_t)w * (size_t)h;
    int middle;
    memset(in, 50, luma);
    memset(in, 200, luma / 20 * 9);
    memset(in + luma, 128, luma / 2);
    if (!dewarp(in, w, h, out)) return false;
    middle = out[SCREEN_H / 2 * SCREEN_W + SCREEN_W / 2];
    fprintf(stderr, "the middle of the view has luma %d, 200 is right\n", middle);
    return middle == 200;
}

// A frame's width or height; 0 for text that is none.
static int size_from(const char* text)
{
    int size;
    char rest;
    return sscanf(text, "%d%c", &size, &rest) == 1 && size % 2 == 0 && size <= 4096 ? size : 0;
}

int main(int argc, char** argv)
{
    const bool from_file = argc == 5;
    const int w = from_file ? size_from(argv[3]) : 1280, h = from_file ? size_from(argv[4]) : 1280;
    const size_t out_bytes = frame_bytes(SCREEN_W, SCREEN_H);
    unsigned char *in, *out;
    bool done = false;

    if ((argc > 2 && !from_file) || w < 320 || h < 240) {
        fprintf(stderr, "usage: dewarp_frame_c [OUTPUT [INPUT WIDTH HEIGHT]], where WIDTH is even, "
                        "320 to 4096, and HEIGHT even, 240 to 4096\n");
        return 2;
    }
    in = malloc(frame_bytes(w, h));
    out = malloc(out_bytes);
    if (!in || !out)
        fprintf(stderr, "no memory for frames of %d x %d pixels\n", w, h);
    else if (from_file)
        done = read_frame(argv[2], in, w, h) && dewarp(in, w, h, out);
    else
        done = dewarp_made_up(in, w, h, out);
    if (done && argc > 1) done = write_frame(argv[1], out, out_bytes);
    free(in);
    free(out);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
