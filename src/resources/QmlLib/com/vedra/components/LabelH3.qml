import com.vedra.kontrols 1.0

Label {
    font: Theme.fonts.h3Font
}
