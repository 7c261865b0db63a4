# Writes a copy of stb_image.h that can be trusted with damaged files: lumofe_check_stb(FROM TO)
#
# Version 2.27 follows what a file says out of its tables, its buffers and the range of a shift. The
# copy has the checks that later versions have, and those that a 32-bit process needs besides.
function(lumofe_check_stb from to)
    file(READ ${from} text)
    string(REGEX MATCH "stb_image - v([0-9.]+)" found "${text}")
    set(version ${CMAKE_MATCH_1})

    # replace(OLD NEW): every OLD of the text becomes NEW. Later versions have some of them.
    macro(replace old new)
        string(FIND "${text}" "${old}" at)
        if(at EQUAL -1 AND version VERSION_EQUAL 2.27)
            message(FATAL_ERROR "${from} is not the stb_image.h 2.27 that tools/media/StbChecks.cmake "
                                "knows, for it lacks this:\n${old}\nInstall Debian 12's libstb-dev, or "
                                "adapt the check")
        endif()
        string(REPLACE "${old}" "${new}" text "${text}")
    endmacro()

    # Input: no pointer passes the file's end, where a 32-bit one could wrap.
    replace([=[   if (n < 0) {
      s->img_buffer = s->img_buffer_end;]=] [=[   if (n < 0 || (!s->io.read && n > s->img_buffer_end - s->img_buffer)) {
      s->img_buffer = s->img_buffer_end;]=])
    replace([=[   if (s->img_buffer+n <= s->img_buffer_end) {]=]
            [=[   if (n == 0) return 1;
   if (n > 0 && n <= s->img_buffer_end - s->img_buffer) {]=])

    # JPEG: tables of too many codes, codes without a symbol, and files that end within a number.
    replace([=[               n += sizes[i];
            }]=] [=[               n += sizes[i];
            }
            if (n > 256) return stbi__err("bad DHT header","Corrupt JPEG");]=])
    replace([=[   STBI_ASSERT((((j->code_buffer) >> (32 - h->size[c])) & stbi__bmask[h->size[c]]) == h->code[c]);]=]
            [=[   if (c < 0 || c >= 256 || h->size[c] != k) return -1;]=])
    replace([=[   if (j->code_bits < n) stbi__grow_buffer_unsafe(j);]=]
            [=[   if (j->code_bits < n) stbi__grow_buffer_unsafe(j);
   if (j->code_bits < n) return 0;]=])
    replace([=[   if (j->code_bits < 1) stbi__grow_buffer_unsafe(j);]=]
            [=[   if (j->code_bits < 1) stbi__grow_buffer_unsafe(j);
   if (j->code_bits < 1) return 0;]=])
    replace([=[s = r & 15; // combined length]=]
            [=[s = r & 15; if (s > j->code_bits) return stbi__err("bad huffman code","Corrupt JPEG");]=])

    # PNG: lengths beyond the file, length and distance codes that do not exist, short palettes.
    replace([=[            if ((int)(ioff + c.length) < (int)ioff) return 0;]=]
            [=[            if (!s->io.read && c.length > (size_t) (s->img_buffer_end - s->img_buffer)) return stbi__err("outofdata","Corrupt PNG");
            if ((int)(ioff + c.length) < (int)ioff) return 0;]=])
    replace([=[         z -= 257;]=] [=[         if (z >= 286) return stbi__err("bad huffman code","Corrupt PNG");
         z -= 257;]=])
    replace([=[         if (z < 0) return stbi__err("bad huffman code","Corrupt PNG");
         dist]=] [=[         if (z < 0 || z >= 30) return stbi__err("bad huffman code","Corrupt PNG");
         dist]=])
    replace([=[if (zout + len > a->zout_end)]=] [=[if (len > a->zout_end - zout)]=])
    replace([=[if (a->zout + len > a->zout_end)]=] [=[if (len > a->zout_end - a->zout)]=])
    replace([=[if (a->zbuffer + len > a->zbuffer_end)]=] [=[if (len > a->zbuffer_end - a->zbuffer)]=])
    replace([=[      prior = cur - stride; //]=] [=[      prior = j == 0 ? cur : cur - stride; //]=])
    replace([=[stbi_uc palette[1024], pal_img_n=0;]=] [=[stbi_uc palette[1024]={0}, pal_img_n=0;]=])

    # BMP: palettes of fewer than no colours.
    replace([=[   stbi_uc pal[256][4];]=] [=[   stbi_uc pal[256][4]={{0}};]=])
    replace([=[if (psize == 0 || psize > 256)]=] [=[if (psize <= 0 || psize > 256)]=])

    file(CONFIGURE OUTPUT ${to} CONTENT "${text}" @ONLY)
endfunction()
