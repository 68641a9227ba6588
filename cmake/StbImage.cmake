# stb_image with the faults of its release mended, most of which later ones no longer have. Each lets an image end the
# program, hold it for ever, show memory that is not its own, or come out as noise. The mended header stands in the build
# folder, in front of the installed one; a release that lacks a faulty line is taken as it is. The tests have an image for
# each fault that shows; bits that run out in a JPEG and colours below 0 in a PSD show under a sanitizer alone.

file(READ ${STB_INCLUDE}/stb/stb_image.h STB_IMAGE)

function(mend FAULTY SOUND)
  string(REPLACE "${FAULTY}" "${SOUND}" MENDED "${STB_IMAGE}")
  set(STB_IMAGE "${MENDED}" PARENT_SCOPE)
endfunction()

# JPEG: a Huffman table may claim more codes than the decoder has room for.
mend([==[            L -= 17;
            if (tc == 0) {]==] [==[            L -= 17;
            if (n > 256) return stbi__err("bad DHT header","Corrupt JPEG");
            if (tc == 0) {]==])
# JPEG: more bits are wanted than the file has; what counts them would become negative, and the bits be shifted too far.
mend([==[   if (j->code_bits < n) stbi__grow_buffer_unsafe(j);]==] [==[   if (j->code_bits < n) stbi__grow_buffer_unsafe(j);
   if (j->code_bits < n) return 0;]==])
mend([==[   if (j->code_bits < 1) stbi__grow_buffer_unsafe(j);]==] [==[   if (j->code_bits < 1) stbi__grow_buffer_unsafe(j);
   if (j->code_bits < 1) return 0;]==])
mend([==[s = r & 15; // combined length]==] [==[s = r & 15; // combined length
            if (s > j->code_bits) return stbi__err("bad huffman code","Corrupt JPEG");]==])
# PIC: what could not be decoded is converted all the same.
mend([==[      result=0;
   }
   *px = x;]==] [==[      return 0;
   }
   *px = x;]==])
# PNG, BMP: a pixel may name a colour that the palette does not have.
mend([==[stbi_uc palette[1024], pal_img_n=0;]==] [==[stbi_uc palette[1024]={0}, pal_img_n=0;]==])
mend([==[   stbi_uc pal[256][4];
   int psize=0,i,j,width;]==] [==[   stbi_uc pal[256][4]={{0}};
   int psize=0,i,j,width;]==])
# HDR: pixels behind the end of the file.
mend([==[            stbi__getn(s, rgbe, 4);]==] [==[            if (!stbi__getn(s, rgbe, 4)) memset(rgbe, 0, 4);]==])
# HDR: behind the end of the file every run is one of no pixels.
mend([==[if (count > nleft) { STBI_FREE(hdr_data)]==] [==[if (count == 0 || count > nleft) { STBI_FREE(hdr_data)]==])
# PSD: colours that were not mixed with white come out below 0, where only a signed number has a lower byte.
mend([==[= (unsigned char) (pixel[]==] [==[= (unsigned char) (int) (pixel[]==])
# PNM: channels of 16 bits have their upper byte first, and take more room than those of 8.
mend([==[   if (req_comp && req_comp != s->img_n) {
      out = stbi__convert_format(out, s->img_n, req_comp, s->img_x, s->img_y);
      if (out == NULL) return out; // stbi__convert_format frees input on failure
   }
   return out;
}

static int      stbi__pnm_isspace]==] [==[   if (ri->bits_per_channel == 16) {
      stbi__uint16 *wide = (stbi__uint16 *) out;
      stbi__uint32 i, n = s->img_n * s->img_x * s->img_y;
      for (i=0; i < n; ++i) wide[i] = (stbi__uint16) (out[2*i] << 8 | out[2*i+1]);
      if (req_comp && req_comp != s->img_n)
         out = (stbi_uc *) stbi__convert_format16(wide, s->img_n, req_comp, s->img_x, s->img_y);
      return out;
   }
   if (req_comp && req_comp != s->img_n) {
      out = stbi__convert_format(out, s->img_n, req_comp, s->img_x, s->img_y);
      if (out == NULL) return out; // stbi__convert_format frees input on failure
   }
   return out;
}

static int      stbi__pnm_isspace]==])

set(MENDED_HEADER ${CMAKE_BINARY_DIR}/mended/stb/stb_image.h)
file(WRITE ${MENDED_HEADER}.new "${STB_IMAGE}")
file(COPY_FILE ${MENDED_HEADER}.new ${MENDED_HEADER} ONLY_IF_DIFFERENT)
add_library(stb_image INTERFACE)
target_include_directories(stb_image SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/mended)
