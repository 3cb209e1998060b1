#pragma once

#include "Core/FileKind.h"

#include <string_view>

/// The extensions of each kind, in lower case. Each stands once.
namespace vh::fileKindTable {

struct List {
    FileKind kind;
    std::string_view extensions; ///< between single spaces
};

struct Package {
    std::string_view extension;
    FileKind kind;
};

// clang-format off
inline constexpr List lists[]{
    // Pictures, layered and vector drawings, high dynamic range and sequences.
    {FileKind::image,
     "jpg jpeg jpe jfif png apng gif bmp dib tif tiff webp heic heif heics avif avifs jxl jp2 j2k jpf jpx jpm j2c jxr "
     "wdp hdp ico icns cur svg svgz psd psb xcf ai eps epsf indd idml afphoto afdesign afpub kra ora clip procreate "
     "pxd sketch fig xd wmf emf tga targa icb vda vst dpx cin exr hdr rgbe pic pict pct sgi rgb bw ras pcx pnm pbm "
     "pgm ppm pam pfm qoi dds ktx ktx2 astc blp fits fit dcm dicom xpm xbm mng jng wbmp iff ilbm flif bpg"},
    // What cameras write, by make.
    {FileKind::image,
     "dng cr2 cr3 crw nef nrw arw srf sr2 raf orf ori rw2 rwl raw pef ptx srw x3f 3fr fff iiq cap erf mef mos mrw dcr "
     "kdc k25 dcs bay gpr mdc lfp xmp aae thm"},
    {FileKind::video,
     "mp4 m4v mov qt avi mkv webm wmv asf flv f4v f4p mpg mpeg mpe m1v m2v mpv m2p vob evo ifo 3gp 3g2 3gpp ogv ogm rm "
     "rmvb divx xvid amv mts m2ts m2t tod mod dv dif hdv y4m yuv h264 264 h265 265 hevc vvc av1 ivf nut mjpeg mjpg mj2 "
     "bik bk2 smk roq wtv dvr-ms tivo trp tp insv lrv lrf 360"},
    // Professional cameras, mastering and editing.
    {FileKind::video,
     "mxf gxf lxf r3d rdc rmd braw ari arx cine crm rsv dnxhd omf aaf nev cdng mlv xavc aep aepx prproj drp drt "
     "fcpbundle fcpxml fcpxmld imovielibrary imovieproj motn veg kdenlive mlt edl ale"},
    {FileKind::music,
     "mp3 m4a m4b m4p m4r aac adts flac alac wav wave w64 rf64 bwf bw64 aif aiff aifc caf ogg oga opus spx wma ape wv "
     "mpc mp2 mp1 mka mpa ac3 eac3 ec3 dts dtshd thd mlp dsf dff au snd voc amr awb gsm qcp ra ram mid midi kar rmi "
     "xm it s3m mtm sf2 sf3 sfz nki logicx band als alp flp ptxs ptf cpr rpp aup aup3 reason m3u m3u8 pls xspf cue lrc"},
    {FileKind::document,
     "pdf xps oxps ps djvu djv epub mobi azw azw3 azw4 kfx fb2 lit cbz cbr cb7 ibooks chm "
     "doc docx docm dot dotx dotm odt ott fodt sxw rtf rtfd wpd wps pages abw hwp hwpx "
     "xls xlsx xlsm xlsb xlt xltx xltm ods ots fods sxc numbers csv tsv slk "
     "ppt pptx pptm pps ppsx ppsm pot potx potm odp otp fodp sxi key keynote odg otg fodg vsd vsdx vsdm "
     "pub one onetoc2 mpp accdb mdb odb "
     "txt text log md markdown mdown mkd rst adoc asciidoc org tex ltx bib textile nfo readme "
     "srt sub ass ssa vtt scc ttml sbv itt "
     "eml emlx msg mbox ics ical vcf vcard ged gpx kml kmz geojson"},
    {FileKind::archive,
     "zip zipx 7z rar tar gz gzip tgz bz bz2 tbz tbz2 tb2 xz txz lzma tlz lz lz4 zst tzst zstd br z taz lzo lha lzh arj "
     "ace arc cab cpio ar sit sitx hqx aar yaa pax xar lrz rz zpaq kgb alz egg r00 r01 r02 r03 z01 z02 par2 war ear"},
    // Programs and what installs them.
    {FileKind::application,
     "app exe msi msix msixbundle appx appxbundle scr dll sys drv so dylib bundle framework kext plugin prefpane "
     "qlgenerator saver appex xpc component vst3 vstplugin pkg mpkg deb rpm apk aab xapk ipa appimage flatpak flatpakref "
     "snap run jar desktop elf ko efi wasm crx xpi oxt vsix gadget workflow shortcut"},
    {FileKind::code,
     "c h cc cpp cxx c++ hh hpp hxx h++ ipp inl tpp cppm ixx m mm swift java kt kts scala groovy gradle clj cljs cljc "
     "edn go rs zig nim d v vala cs csx fs fsi fsx vb vbs bas pas pp dpr lpr ada adb ads f f77 f90 f95 f03 f08 for cob "
     "cbl cpy asm s nasm cu cuh cl glsl vert frag geom comp hlsl metal wgsl shader py pyw pyi pyx ipynb rb erb rake "
     "gemspec php phtml php5 pl pm pod t lua tcl r jl hs lhs ml mli re rei elm ex exs erl hrl lisp lsp el scm rkt "
     "js mjs cjs jsx ts cts tsx vue svelte astro coffee dart html htm xhtml css scss sass less styl json jsonc "
     "json5 jsonl ndjson yaml yml toml ini cfg conf properties plist xml xsd xsl xslt dtd wsdl sql psql graphql gql "
     "proto thrift capnp sh bash zsh fish ksh csh ps1 psm1 psd1 bat cmd awk sed applescript scpt ahk cmake mk mak make "
     "ninja bazel bzl gn gni meson dockerfile tf tfvars hcl nix vim diff patch lock pbxproj xcodeproj xcworkspace "
     "xcconfig xib storyboard strings stringsdict entitlements sln csproj vcxproj fsproj vbproj pro pri qrc qml ui "
     "pyc class o obj a lib pdb sol vhdl sv svh verilog ino pde gd tres tscn hx as"},
    {FileKind::font, "ttf otf ttc otc woff woff2 eot dfont suit pfa pfb afm bdf pcf fon fnt glyphs ufo vfb sfd"},
    {FileKind::diskImage,
     "iso img dmg cdr toast sparseimage sparsebundle udf nrg mdf mds ccd dsk vdi vmdk vhd vhdx vhds qcow qcow2 qed "
     "hdd hds wim swm esd dd e01 ex01 aff aff4 l01 ima vfd adf d64 d81 squashfs sqsh cramfs simg ova ovf utm "
     "pvm vmwarevm"},
};

/// Folders that a person sees as one thing.
inline constexpr Package packages[]{
    {"app", FileKind::application},         {"appex", FileKind::application},
    {"bundle", FileKind::application},      {"framework", FileKind::application},
    {"kext", FileKind::application},        {"plugin", FileKind::application},
    {"prefpane", FileKind::application},    {"qlgenerator", FileKind::application},
    {"saver", FileKind::application},       {"xpc", FileKind::application},
    {"component", FileKind::application},   {"vst3", FileKind::application},
    {"pkg", FileKind::application},         {"mpkg", FileKind::application},
    {"rtfd", FileKind::document},           {"pages", FileKind::document},
    {"numbers", FileKind::document},        {"key", FileKind::document},
    {"fcpbundle", FileKind::video},         {"fcpxmld", FileKind::video},
    {"imovielibrary", FileKind::video},     {"rdc", FileKind::video},
    {"logicx", FileKind::music},            {"band", FileKind::music},
    {"photoslibrary", FileKind::image},     {"xcodeproj", FileKind::code},
    {"xcworkspace", FileKind::code},        {"sparsebundle", FileKind::diskImage},
    {"utm", FileKind::diskImage},           {"pvm", FileKind::diskImage},
    {"vmwarevm", FileKind::diskImage},
};
// clang-format on

} // namespace vh::fileKindTable
