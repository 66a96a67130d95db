#include "KImage/ImageLoader.h"
#include "KImage/Pictures.h"

TEST(HugeTiff, OpensWithoutItsPixelsEverBeingWholeInMemory)
{
    const test::Pictures pictures;
    const QString path = pictures.path("huge.tif");
    pictures.run("vips",
                 {"black", path + "[compression=deflate]", "40000", "20000", "--bands", "3"});
    LoadRequest request;
    request.limit = QSize(8192, 8192);
    request.format = PixelFormat::Bgra8Premultiplied;
    KBitmap bitmap;
    ASSERT_EQ(ImageLoader::load(path, request, bitmap), ImageError::None);
    EXPECT_EQ(bitmap.size(), QSize(8192, 4096));
    EXPECT_LT(test::peakMegabytes(), 700); // the pixels are 2289, the result is 128
}
