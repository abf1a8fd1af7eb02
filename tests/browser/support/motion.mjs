// Whether something moves in the picture.
const kBlock = 20; // pixels; the mean over so many is the same in each frame but for motion, whatever the noise

// The mean level of each block of the picture as it is shown.
export async function blocks(visit) {
  return visit.get('picture').evaluate((canvas, size) => {
    const { data, width, height } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
    const across = Math.ceil(width / size);
    const sums = new Array(across * Math.ceil(height / size)).fill(0);
    for (let y = 0; y < height; ++y) {
      for (let x = 0; x < width; ++x) {
        sums[Math.floor(y / size) * across + Math.floor(x / size)] += data[4 * (y * width + x) + 1];
      }
    }
    return sums.map((sum) => sum / (size * size));
  }, kBlock);
}

// How far the block that has changed most is from what it was.
export function difference(before, now) {
  return Math.max(...before.map((level, index) => Math.abs(level - now[index])));
}
