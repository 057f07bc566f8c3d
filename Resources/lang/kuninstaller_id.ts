<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="id" sourcelanguage="en">
<context>
    <name>ConfirmWindow</name>
    <message>
        <source>ConfirmWindow</source>
        <translation>Konfirmasi penghapusan instalan</translation>
    </message>
    <message>
        <source>Are you sure you want to remove Norvane Clipwright?</source>
        <translation>Anda yakin ingin menghapus Norvane Clipwright?</translation>
    </message>
    <message>
        <source>Remove all the effect resource files</source>
        <translation>Hapus juga semua file efek</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Hapus</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Batal</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Norvane Clipwright Uninstaller</source>
        <translation>Hapus instalan Norvane Clipwright</translation>
    </message>
    <message>
        <source>Failed to check update!</source>
        <translation>Gagal memeriksa pembaruan.</translation>
    </message>
    <message>
        <source>You are already the latest version!</source>
        <translation>Anda sudah memakai versi terbaru.</translation>
    </message>
    <message>
        <source>Failed to download the update.</source>
        <translation>Gagal mengunduh pembaruan.</translation>
    </message>
    <message>
        <source>Install failed.</source>
        <translation>Penginstalan gagal.</translation>
    </message>
</context>
<context>
    <name>MessageWindow</name>
    <message>
        <source>MessageWindow</source>
        <translation>Hapus instalan Norvane Clipwright</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>OptionPage</name>
    <message>
        <source>OptionPage</source>
        <translation>OptionPage</translation>
    </message>
    <message>
        <source>Hello there,

I am Arlen, an engineer at Norvane Technology. We are committed to creating easy-to-use software. We will work hard to make it as suitable as possible for you.

Thank you for your feedback.
Hope to meet you again.

Thank you!</source>
        <translation>Halo,

Saya Arlen, pengembang di Norvane Technology. Kami berkomitmen membuat perangkat lunak yang mudah digunakan dan akan terus berupaya agar produk kami semakin sesuai dengan kebutuhan Anda.

Terima kasih atas masukan Anda.
Semoga kita bertemu lagi.

Terima kasih!</translation>
    </message>
    <message>
        <source>PushButton</source>
        <translation>PushButton</translation>
    </message>
    <message>
        <source>Can you tell me why you want to uninstall?</source>
        <translation>Boleh tahu alasan Anda menghapus aplikasi ini?</translation>
    </message>
    <message>
        <source>It crashed or frozen on my computer.</source>
        <translation>Crash atau macet di komputer saya</translation>
    </message>
    <message>
        <source>The price is not appropriate.</source>
        <translation>Harganya tidak sesuai bagi saya</translation>
    </message>
    <message>
        <source>It lacks the features I need.</source>
        <translation>Fitur yang saya perlukan tidak ada</translation>
    </message>
    <message>
        <source>It is too difficult to use.</source>
        <translation>Terlalu sulit digunakan</translation>
    </message>
    <message>
        <source>I have found a better tool.</source>
        <translation>Saya menemukan aplikasi yang lebih baik</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Alasan lain</translation>
    </message>
    <message>
        <source>Describe the problem</source>
        <translation>Jelaskan masalahnya</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>Lanjutkan</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Batal</translation>
    </message>
    <message>
        <source>Please describe the problem you encountered.</source>
        <translation>Silakan jelaskan masalah yang Anda alami.</translation>
    </message>
</context>
<context>
    <name>ProductItem</name>
    <message>
        <source>ProductItem</source>
        <translation>ProductItem</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
</context>
<context>
    <name>ProductPage</name>
    <message>
        <source>ProductPage</source>
        <translation>ProductPage</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Semua</translation>
    </message>
    <message>
        <source>Creativity</source>
        <translation>Kreativitas</translation>
    </message>
    <message>
        <source>Productivity</source>
        <translation>Produktivitas</translation>
    </message>
    <message>
        <source>Utility</source>
        <translation>Utilitas</translation>
    </message>
    <message>
        <source>Norvane</source>
        <translation>Norvane</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Aplikasi lainnya</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Tutup</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <extracomment>"LTR" for languages that are written from left to right, "RTL" for the others. The framework asks for it when a catalogue is installed and mirrors the whole interface accordingly.</extracomment>
        <translation>LTR</translation>
    </message>
</context>
<context>
    <name>SplashWindow</name>
    <message>
        <source>SplashWindow</source>
        <translation>Hapus instalan Norvane Clipwright</translation>
    </message>
    <message>
        <source>Loading</source>
        <translation>Memuat</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Tutup</translation>
    </message>
</context>
<context>
    <name>UninstallPage</name>
    <message>
        <source>UninstallPage</source>
        <translation>UninstallPage</translation>
    </message>
    <message>
        <source>Thanks for your feedback! Uninstalling...</source>
        <translation>Terima kasih atas masukan Anda!
Menghapus instalan…</translation>
    </message>
    <message>
        <source>Time remaining: About 15 seconds</source>
        <translation>Sisa waktu: sekitar 15 detik</translation>
    </message>
    <message>
        <source>Uninstall progress</source>
        <translation>Progres penghapusan instalan</translation>
    </message>
    <message>
        <source>Email address</source>
        <translation>Alamat email</translation>
    </message>
    <message>
        <source>Please enter a valid email address.</source>
        <translation>Masukkan alamat email yang valid.</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Selesai</translation>
    </message>
    <message>
        <source>More Apps You Might Like</source>
        <translation>Aplikasi lainnya</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Tutup</translation>
    </message>
    <message>
        <source>More Products</source>
        <translation>Produk lainnya</translation>
    </message>
    <message>
        <source>Uninstall Failed</source>
        <translation>Gagal menghapus instalan</translation>
    </message>
    <message>
        <source>Your uninstallation encountered errors. Please try uninstalling again.</source>
        <translation>Terjadi kesalahan saat menghapus instalan. Coba lagi.</translation>
    </message>
    <message>
        <source>Time remaining: About %1 seconds</source>
        <translation>Sisa waktu: sekitar %1 detik</translation>
    </message>
    <message>
        <source>Successfully uninstalled</source>
        <translation>Penghapusan instalan berhasil</translation>
    </message>
    <message>
        <source>Subscribe to get the latest updates</source>
        <translation>Berlangganan untuk mendapat kabar terbaru</translation>
    </message>
</context>
<context>
    <name>UpgradePage</name>
    <message>
        <source>UpgradePage</source>
        <translation>UpgradePage</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Tutup</translation>
    </message>
    <message>
        <source>Upgrading, please wait...</source>
        <translation>Sedang memperbarui, harap tunggu…</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>TextLabel</translation>
    </message>
    <message>
        <source>Upgrade progress</source>
        <translation>Progres pembaruan</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Batal</translation>
    </message>
    <message>
        <source>Upgrade completed</source>
        <translation>Pembaruan selesai</translation>
    </message>
    <message>
        <source>The new version is more stable and faster!</source>
        <translation>Versi baru lebih stabil dan lebih cepat!</translation>
    </message>
    <message>
        <source>Launch</source>
        <translation>Jalankan</translation>
    </message>
</context>
</TS>
