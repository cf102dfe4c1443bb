<?php
require 'basket.php';
$count = count($basket);
?>
<!DOCTYPE html>
<html>
<head><title>Your basket</title></head>
<body>
<h1>Your basket</h1>
<?php if ($count == 0): ?>
<p>Your basket is empty. <a href="index.php">Go on shopping</a>.</p>
<?php else: ?>
<p>You chose <?php echo $count ?> <?php echo $count == 1 ? 'article' : 'articles' ?>.</p>
<form action="<?php echo htmlspecialchars($_SERVER['PHP_SELF']) ?>" method="post">
<input type="submit" value="Order now">
</form>
<?php endif ?>
<script>
document.title += " (<?php echo $count ?>)";
</script>
</body>
</html>
