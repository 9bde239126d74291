"""The page behind a share link: it asks the library whether the link opens, and shows the stream or says why not."""
