"""The page that a share link opens: it asks the library whether the link is valid, and shows the stream, or why not."""
