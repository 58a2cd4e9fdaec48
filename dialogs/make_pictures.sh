#!/usr/bin/env bash
# Makes from the drawings in dialogs/pictures what the program shows, into dialogs/pictures/made. What it makes is kept
# in the tree, so that a build needs neither this script nor its packages. Run it after changing a drawing.
#
#   NAME.png         a line drawing as a mask of 192 pixels: its opacity is the drawing, its brightness the share of the
#                    accent colour; the program gives it the colours of its windows
#   message_NAME.png 192 pixels: six times the size in a message box
#   mact_SIZE.png    the emblem, drawn for each size
#   picture_N.png    the picture in the main window, N times its size
#   mact.ico         the emblem of the Windows programs
#   SHA256SUMS       of this script and the drawings; a test compares them
set -euo pipefail
source "$(dirname "$0")/../.ci/setup.sh"
cd "$root/dialogs/pictures"
install_missing "${picture_packages[@]}"

rm -rf made
mkdir made
emblem_sizes=(16 20 24 32 40 48 64 96 128 256)
for drawing in *.svg; do
  name=${drawing%.svg}
  case $name in
    mact)
      for size in "${emblem_sizes[@]}"; do rsvg-convert -w "$size" -h "$size" "$drawing" -o "made/mact_$size.png"; done
      ;;
    picture)
      for times in 1 2 3; do rsvg-convert -z "$times" "$drawing" -o "made/picture_$times.png"; done
      ;;
    message_*) rsvg-convert -w 192 -h 192 "$drawing" -o "made/$name.png" ;;
    *) sed 's/currentColor/#000000/g; s/accentColor/#ffffff/g' "$drawing" | rsvg-convert -w 192 -h 192 -o "made/$name.png" ;;
  esac
done
icotool --create --output=made/mact.ico $(printf 'made/mact_%s.png ' 16 24 32 48 64) --raw=made/mact_256.png
sha256sum ../make_pictures.sh ./*.svg | sed 's, \./, ,' >made/SHA256SUMS
