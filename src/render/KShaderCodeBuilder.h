#pragma once

// The program's one source of truth for projections, stereo mode and effect, and the writer of the
// shader text that follows from them; owned by Application, set on the GUI thread.
//
// The text functions are called on the render thread of whoever draws (the view, a headset). They
// read without a lock: a value that changes meanwhile raises the drawer's dirty flag again, and
// the text is made anew.

#include <QObject>
#include <QPair>
#include <QString>

class Application;

class KShaderCodeBuilder : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool hmdMode READ hmdMode WRITE setHmdMode NOTIFY hmdModeChanged)
    Q_PROPERTY(int effect READ effect WRITE setEffect NOTIFY effectChanged)
    Q_PROPERTY(int projection READ projection WRITE setProjection NOTIFY projectionChanged)
    Q_PROPERTY(int stereoMode READ stereoMode WRITE setStereoMode NOTIFY stereoModeChanged)
    Q_PROPERTY(int projectionSource READ projectionSource WRITE setProjectionSource NOTIFY
                   projectionSourceChanged)
    Q_PROPERTY(
        int rotationSource READ rotationSource WRITE setRotationSource NOTIFY rotationSourceChanged)
    Q_PROPERTY(bool invertedColors READ invertedColors WRITE setInvertedColors NOTIFY
                   invertedColorsChanged)
    Q_PROPERTY(QString texturePixelFormat READ texturePixelFormat WRITE setTexturePixelFormat NOTIFY
                   texturePixelFormatChanged)

public:
    enum InputProjection {
        EQUIRECTANGULAR = 0,
        STANDARD = 1,
        CUBEMAP = 2,
        FISHEYE_CIRCLE = 3,
        AUTO = 4, ///< of the settings only: resolved for each medium
        LAST_VALUE_INPUTPROJECTION = 5
    };
    Q_ENUM(InputProjection)

    enum ShaderProjection {
        ORVEX = 0,
        RECTILINEAR = 1,
        LITTLE_PLANET = 2,
        FISHEYE = 3,
        LAST_VALUE_PROJECTION = 4
    };
    Q_ENUM(ShaderProjection)

    enum ShaderEffect {
        NO_EFFECT = 0,
        SEPIA = 1,
        BLACK_AND_WHITE = 2,
        TV = 3,
        INVERT = 4,
        RED_ONLY = 5,
        YELLOW_ONLY = 6,
        BLUE_ONLY = 7,
        LAST_VALUE_EFFECT = 8
    };
    Q_ENUM(ShaderEffect)

    enum StereoMode {
        STEREO_2D = 0,
        STEREO_3D_OVERUNDER = 1,
        STEREO_3D_SIDEBYSIDE = 2,
        STEREO_3D_OVERUNDER_INVERTED = 3,
        STEREO_3D_SIDEBYSIDE_INVERTED = 4,
        STEREO_AUTO = 5 ///< of the settings only: resolved for each medium
    };
    Q_ENUM(StereoMode)

    /// The projections and the stereo mode start with the settings of this run.
    explicit KShaderCodeBuilder(Application *application);

    bool hmdMode() const { return m_hmdMode; }
    int effect() const { return m_effect; }
    int projection() const { return m_projection; }
    int stereoMode() const { return m_stereoMode; }
    int projectionSource() const { return m_projectionSource; }
    int rotationSource() const { return m_rotationSource; }
    bool invertedColors() const { return m_invertedColors; }
    QString texturePixelFormat() const { return m_texturePixelFormat; }

    void setHmdMode(bool hmdMode);
    void setEffect(int effect);
    void setProjection(int projection);
    void setStereoMode(int stereoMode);
    void setProjectionSource(int projectionSource);
    void setRotationSource(int rotationSource);
    void setInvertedColors(bool invertedColors);
    void setTexturePixelFormat(const QString &texturePixelFormat);

    Q_INVOKABLE void setNextEffect();

    /// Goes through the setting "instance/output/projection", which comes back to the property.
    Q_INVOKABLE void setNextProjection();

    /// Exchanges the eyes of a stereo source; without stereo nothing changes.
    Q_INVOKABLE void switchEyeStereoscopy();

    QString vertexShaderCode() const;

    /// The panorama as the properties stand: (false, false, false) for the window, (false, true,
    /// true) for the panel of the interface inside the headset, @p forceRectilinear for its eyes.
    /// Started for a host application, the first call turns invertedColors on, without a signal.
    QString fragmentShaderCode(bool forceRectilinear, bool overlay, bool flipY);

    /// Calls @p slot of @p drawer for each change after which fragmentShaderCode() may give another
    /// text.
    template <class Drawer>
    void onTextChange(Drawer *drawer, void (Drawer::*slot)())
    {
        for (auto changed :
             {&KShaderCodeBuilder::hmdModeChanged, &KShaderCodeBuilder::effectChanged,
              &KShaderCodeBuilder::projectionChanged, &KShaderCodeBuilder::projectionSourceChanged,
              &KShaderCodeBuilder::stereoModeChanged, &KShaderCodeBuilder::rotationSourceChanged,
              &KShaderCodeBuilder::invertedColorsChanged,
              &KShaderCodeBuilder::texturePixelFormatChanged})
            connect(this, changed, drawer, slot);
    }

    QString blitShaderCode() const;

    /// `uProjScale` and `uProjectionDistance` for a field of view in degrees.
    static QPair<float, float> orvexProjectionParameters(float fov);

signals:
    void hmdModeChanged();
    void effectChanged();
    void projectionChanged();
    void stereoModeChanged();
    void projectionSourceChanged();
    void rotationSourceChanged();
    void invertedColorsChanged();
    void texturePixelFormatChanged();

private:
    bool m_hmdMode = false;
    int m_effect = NO_EFFECT;
    int m_projection = ORVEX;
    int m_stereoMode = STEREO_2D;
    int m_projectionSource = EQUIRECTANGULAR;
    int m_rotationSource = 0;
    bool m_restrictYawPitch = true;
    bool m_invertedColors = false;
    QString m_texturePixelFormat;
    Application *m_application;
};
